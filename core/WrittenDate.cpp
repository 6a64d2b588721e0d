// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/WrittenDate.h"

#include "core/DateHelpers.h"
#include "core/LocalTime.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <utility>
#include <vector>

namespace dorvane {

namespace {

constexpr int daysOfAWeek = 7;
constexpr int monthsOfAYear = 12;
constexpr int firstYear = 2000;

const QString today = QStringLiteral("today");
const QString tomorrow = QStringLiteral("tomorrow");

// Without the words that some territories write into their dates.
QString dateFormat(const QLocale& territory) {
    static const QRegularExpression words(QStringLiteral("'[^']*'"));
    QString format = territory.dateFormat(QLocale::ShortFormat).remove(words).trimmed();
    if (!format.contains(QStringLiteral("yyyy")))
        format.replace(QRegularExpression(QStringLiteral("y+")), QStringLiteral("yyyy"));
    return format;
}

// -- The names of months and weekdays -----------------------------------------------------------

QString folded(QString name) {
    return name.remove(u'.').toCaseFolded();
}

using Name = QString (QLocale::*)(int, QLocale::FormatType) const;

// How people call the number: in the language of the territory and in English.
QStringList namesOf(int number, const QLocale& territory, std::initializer_list<Name> names) {
    QStringList all;
    for (const QLocale& language : {territory, dateLanguage()})
        for (const Name name : names)
            for (const auto format : {QLocale::LongFormat, QLocale::ShortFormat})
                all << folded((language.*name)(number, format));
    return all;
}

// The numbers from 1 that a word may name, and whether by the whole of a name.
struct Meaning {
    std::vector<int> whole;
    std::vector<int> begun;

    [[nodiscard]] std::optional<int> only() const {
        const std::vector<int>& best = whole.empty() ? begun : whole;
        return best.size() == 1 ? std::optional(best.front()) : std::nullopt;
    }
};

Meaning meaningOf(const QString& word, int count, const QLocale& territory,
                  std::initializer_list<Name> names) {
    constexpr qsizetype fewest = 3; // letters of a name that stand for it
    Meaning meaning;
    for (int number = 1; number <= count; ++number) {
        const QStringList known = namesOf(number, territory, names);
        if (known.contains(word))
            meaning.whole.push_back(number);
        else if (word.size() >= fewest && std::ranges::any_of(known, [&](const QString& name) {
                     return name.startsWith(word);
                 }))
            meaning.begun.push_back(number);
    }
    return meaning;
}

std::optional<int> monthNamed(const QString& word, const QLocale& territory) {
    return meaningOf(word, monthsOfAYear, territory,
                     {&QLocale::monthName, &QLocale::standaloneMonthName})
        .only();
}

std::optional<int> weekdayNumber(const QString& word, const QLocale& territory) {
    return meaningOf(word, daysOfAWeek, territory, {&QLocale::dayName, &QLocale::standaloneDayName})
        .only();
}

bool isBeginningOfAName(const QString& word, const QLocale& territory) {
    QStringList names{today, tomorrow};
    for (int month = 1; month <= monthsOfAYear; ++month)
        names << namesOf(month, territory, {&QLocale::monthName, &QLocale::standaloneMonthName});
    for (int day = 1; day <= daysOfAWeek; ++day)
        names << namesOf(day, territory, {&QLocale::dayName, &QLocale::standaloneDayName});
    return std::ranges::any_of(names, [&](const QString& name) { return name.startsWith(word); });
}

// -- The parts of a text ------------------------------------------------------------------------

struct Number {
    int value = 0;
    qsizetype digits = 0;

    [[nodiscard]] bool canBeYear() const { return digits == 4 || digits == 2; }
    [[nodiscard]] int year() const { return digits == 2 ? firstYear + value : value; }
    [[nodiscard]] bool canBeDayOrMonth() const { return digits <= 2; }
};

struct Words {
    std::vector<Number> numbers;
    QStringList names;
};

// Nothing for a text with anything else in it. What tells only that a number is a day, a month or a
// year is left out: 24th, 1er, 12月24日.
std::optional<Words> wordsOf(const QString& text) {
    constexpr qsizetype mostDigits = 8;
    if (!text.isEmpty() && QStringLiteral("./,-").contains(text.front()))
        return std::nullopt; // -1 is no day
    static const QRegularExpression next(
        QStringLiteral("\\G(?:([0-9]++)(?:st|nd|rd|th|er|[年月日년월일])?(?![\\p{L}\\p{M}])|"
                       "([0-9]++)(?=\\p{L})|([\\p{L}\\p{M}]+)|[\\s./,\\-\\p{Cf}]+)"),
        QRegularExpression::UseUnicodePropertiesOption | QRegularExpression::CaseInsensitiveOption);
    Words words;
    qsizetype end = 0;
    for (auto matches = next.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        end = match.capturedEnd();
        const QString number = match.captured(1) + match.captured(2); // one of them is empty
        if (number.size() > mostDigits)
            return std::nullopt;
        if (!number.isEmpty())
            words.numbers.push_back({number.toInt(), number.size()});
        if (match.capturedLength(3) > 0)
            words.names << match.captured(3).toCaseFolded();
    }
    return end == text.size() ? std::optional(words) : std::nullopt;
}

// -- Dates --------------------------------------------------------------------------------------

// What was said of a date.
struct Said {
    std::optional<int> year = {}, month = {}, day = {}, weekday = {};
    bool isYearShort = false; // two digits, which nobody writes of the past
};

// By the place of each number, where all of them can stand there.
std::optional<Said> inOrder(const std::vector<Number>& numbers, const QString& order) {
    Said said;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const QChar part = order[qsizetype(i)];
        if (part == u'y' ? !numbers[i].canBeYear() : !numbers[i].canBeDayOrMonth())
            return std::nullopt;
        if (part == u'y') {
            said.year = numbers[i].year();
            said.isYearShort = numbers[i].digits == 2;
        } else {
            (part == u'M' ? said.month : said.day) = numbers[i].value;
        }
    }
    return said;
}

std::optional<Said> ofNumbers(const std::vector<Number>& numbers, const QString& order) {
    if (numbers.size() == 1 && numbers[0].digits == 8) {
        const int value = numbers[0].value;
        return Said{.year = value / 10000, .month = value / 100 % 100, .day = value % 100};
    }
    if (numbers.size() == 1)
        return inOrder(numbers, QStringLiteral("d"));
    if (numbers.size() == 2)
        return inOrder(numbers, QString(order).remove(u'y'));
    if (numbers.size() != 3)
        return std::nullopt;
    return inOrder(numbers, numbers[0].digits == 4 ? QStringLiteral("yMd") : order);
}

// Beside the name of a month the day comes first, unless the other is a year in full.
std::optional<Said> besideMonth(int month, std::vector<Number> numbers) {
    if (numbers.size() == 2 && numbers[0].digits == 4)
        std::swap(numbers[0], numbers[1]);
    if (numbers.empty() || numbers.size() > 2)
        return std::nullopt;
    std::optional<Said> said = inOrder(numbers, QStringLiteral("dy"));
    if (said)
        said->month = month;
    return said;
}

std::optional<Said> saidBy(const Words& words, const QLocale& territory) {
    std::optional<int> month;
    std::optional<int> weekday;
    for (const QString& name : words.names) {
        const auto asMonth = words.numbers.empty() ? std::nullopt : monthNamed(name, territory);
        if (asMonth && !month)
            month = asMonth;
        else if (const auto asWeekday = weekdayNumber(name, territory); asWeekday && !weekday)
            weekday = asWeekday;
        else
            return std::nullopt;
    }
    std::optional<Said> said(std::in_place);
    if (month)
        said = besideMonth(*month, words.numbers);
    else if (!words.numbers.empty())
        said = ofNumbers(words.numbers, dateOrder(territory));
    if (said)
        said->weekday = weekday;
    return said;
}

// The first of the dates from today on that is right, and at which the time is still ahead.
template<typename IsRight>
std::optional<QDate> nextDate(const QDateTime& now, QTime time, int most, IsRight isRight) {
    for (int i = 0; i <= most; ++i)
        if (const QDate date = now.date().addDays(i);
            isRight(date) && (i > 0 || localMomentAfter(date, time, now) > now))
            return date;
    return std::nullopt;
}

std::optional<QDate> dateSaid(const Said& said, const QDateTime& now, QTime time) {
    const auto isOfWeekday = [&](QDate date) {
        return !said.weekday || date.dayOfWeek() == *said.weekday;
    };
    if (!said.day)
        return said.weekday ? nextDate(now, time, daysOfAWeek, isOfWeekday) : std::nullopt;
    if (said.year) {
        const QDate date(*said.year, *said.month, *said.day);
        const int present = now.date().year();
        const int first = said.isYearShort ? present : firstYear;
        const bool isNear = *said.year >= first && *said.year <= present + mostYearsAhead;
        return date.isValid() && isNear && isOfWeekday(date) ? std::optional(date) : std::nullopt;
    }
    constexpr int untilAnyLeapDay = 366 * 8;
    const auto date = nextDate(now, time, untilAnyLeapDay, [&](QDate each) {
        return each.month() == said.month.value_or(each.month()) && each.day() == *said.day;
    });
    return date && isOfWeekday(*date) ? date : std::nullopt;
}

bool canBecomeDate(const Words& words, const QLocale& territory) {
    const std::vector<Number>& numbers = words.numbers;
    const std::size_t parts = numbers.size() + std::size_t(words.names.size());
    const bool isWhole = numbers.size() == 3 &&
                         (numbers[0].digits == 4 ? numbers[2].digits >= 2 : numbers[2].digits >= 4);
    return parts <= 4 && !isWhole && std::ranges::all_of(words.names, [&](const QString& name) {
               return isBeginningOfAName(name, territory);
           });
}

} // namespace

QString dateShown(QDate date, const QLocale& territory) {
    return dateLanguage().toString(date, dateFormat(territory));
}

QString dateOrder(const QLocale& territory) {
    QString order;
    for (const QChar character : dateFormat(territory))
        if (QStringLiteral("dMy").contains(character) && !order.contains(character))
            order += character;
    return order;
}

std::optional<Weekday> weekdayRead(const QString& word, const QLocale& territory) {
    const auto number = weekdayNumber(folded(word), territory);
    return number ? std::optional(Weekday(int(Weekday::Monday) + *number - 1)) : std::nullopt;
}

DateReading dateRead(const QString& text, const QLocale& territory, const QDateTime& now,
                     QTime time) {
    const std::optional<Words> words = wordsOf(text.trimmed());
    if (!words)
        return {};
    std::optional<QDate> date;
    if (words->numbers.empty() && words->names == QStringList(today))
        date = now.date();
    else if (words->numbers.empty() && words->names == QStringList(tomorrow))
        date = now.date().addDays(1);
    else if (const std::optional<Said> said = saidBy(*words, territory))
        date = dateSaid(*said, now, time);
    return {date, date || canBecomeDate(*words, territory)};
}

} // namespace dorvane
