// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/preferences/LibplistFormat.h"

#include <QDateTime>

#include <gtest/gtest.h>
#include <limits>

using namespace dorvane;

namespace {

const LibplistFormat format;

QVariantMap everyType() {
    return {{QStringLiteral("true"), true},
            {QStringLiteral("false"), false},
            {QStringLiteral("zero"), qint64(0)},
            {QStringLiteral("negative"), qint64(-5)},
            {QStringLiteral("least"), std::numeric_limits<qint64>::min()},
            {QStringLiteral("most"), std::numeric_limits<qint64>::max()},
            {QStringLiteral("huge"), std::numeric_limits<quint64>::max()},
            {QStringLiteral("real"), 0.1},
            {QStringLiteral("date"), QDateTime(QDate(2026, 11, 21), QTime(3, 15, 7, 89), Qt::UTC)},
            {QStringLiteral("distant"), QDateTime(QDate(4001, 1, 1), QTime(0, 0), Qt::UTC)},
            {QStringLiteral("past"), QDateTime(QDate(1, 1, 1), QTime(0, 0), Qt::UTC)},
            {QStringLiteral("text"), QStringLiteral("Frühstück ⏰ <&>")},
            {QStringLiteral("none"), QString()},
            {QString(), QStringLiteral("under the empty key")},
            {QStringLiteral("bytes"), QByteArray("\0\xFF\0", 3)},
            {QStringLiteral("no bytes"), QByteArray()},
            {QStringLiteral("uid"), QVariant::fromValue(PropertyListUid{70000})},
            {QStringLiteral("list"),
             QVariantList{qint64(1), QVariantList(), QVariantMap(), QStringLiteral("x")}}};
}

TEST(LibplistFormatTest, everyTypeSurvivesTheBinaryFormat) {
    const QVariantMap original = everyType();
    const auto bytes = format.binary(original);
    ASSERT_TRUE(bytes);
    const auto parsed = format.parse(*bytes);
    ASSERT_TRUE(parsed);
    const QVariantMap copy = parsed->toMap();
    EXPECT_EQ(copy.keys(), original.keys());
    for (auto entry = original.cbegin(); entry != original.cend(); ++entry) {
        EXPECT_EQ(copy[entry.key()], entry.value()) << qPrintable(entry.key());
        EXPECT_EQ(copy[entry.key()].typeId(), entry.value().typeId()) << qPrintable(entry.key());
    }
}

TEST(LibplistFormatTest, refusesToWriteWhatIsNoProperty) {
    const QVariant cases[] = {QVariant(), QVariantList{QVariant()}, QTime(7, 0), QDateTime(),
                              QVariantMap{{QStringLiteral("point"), QVariantList{QChar(u'x')}}}};
    for (const QVariant& value : cases)
        EXPECT_FALSE(format.binary(value)) << value.typeName();
}

// -- What nobody of good will sends ---------------------------------------------------------------

QByteArray bigEndian(quint64 value) {
    QByteArray bytes;
    for (int shift = 56; shift >= 0; shift -= 8)
        bytes.append(static_cast<char>(value >> shift & 0xFFU));
    return bytes;
}

QByteArray bytes(std::initializer_list<int> values) {
    QByteArray result;
    for (const int value : values)
        result.append(static_cast<char>(value));
    return result;
}

// A binary list of these objects, with offsets of two bytes and references of one; the first one
// is the root.
QByteArray binaryList(const QList<QByteArray>& objects) {
    QByteArray list = "bplist00";
    QByteArray offsets;
    for (const QByteArray& object : objects) {
        offsets += bigEndian(static_cast<quint64>(list.size())).right(2);
        list += object;
    }
    const auto table = static_cast<quint64>(list.size());
    return list + offsets + bytes({0, 0, 0, 0, 0, 0, 2, 1}) +
           bigEndian(static_cast<quint64>(objects.size())) + bigEndian(0) + bigEndian(table);
}

// Arrays that hold the next array `times` times over, `levels` deep.
QByteArray nestedArrays(int levels, int times) {
    QList<QByteArray> objects;
    for (int level = 1; level < levels; ++level)
        objects.append(bytes({0xA0 | times}) + QByteArray(times, static_cast<char>(level)));
    objects.append(bytes({0xA0}));
    return binaryList(objects);
}

QByteArray nestedXml(int levels) {
    return "<plist>" + QByteArray("<array>").repeated(levels) +
           QByteArray("</array>").repeated(levels) + "</plist>";
}

TEST(LibplistFormatTest, refusesHostileLists) {
    const QByteArray one = bytes({0x10, 0x01});
    const QByteArray key = bytes({0x51, 'k'});
    const struct {
        const char* what;
        QByteArray data;
        bool isAccepted = false;
    } cases[] = {
        {"an honest list, to see that the others fail for their reason",
         binaryList({bytes({0xD1, 1, 2}), key, one}), true},
        {"nothing", ""},
        {"a text", "Dorvane"},
        {"entities that multiply",
         "<!DOCTYPE plist [<!ENTITY a 'ha'><!ENTITY b '&a;&a;'>]><plist><string>&b;</string>"
         "</plist>"},
        {"honest nesting in XML", nestedXml(50), true},
        {"deep nesting in XML", nestedXml(100'000)},
        {"honest nesting", nestedArrays(50, 1), true},
        {"deep nesting", nestedArrays(200, 1)},
        {"an array in itself", binaryList({bytes({0xA1, 0})})},
        {"a dictionary in its own array", binaryList({bytes({0xD1, 1, 2}), key, bytes({0xA1, 0})})},
        {"a branch shared a billion times", nestedArrays(31, 2)},
        {"a key that is no text", binaryList({bytes({0xD1, 1, 1}), one})},
        {"a key with a NUL", binaryList({bytes({0xD1, 1, 2}), bytes({0x52, 'k', 0}), one})},
        {"a wide key with a NUL",
         binaryList({bytes({0xD1, 1, 2}), bytes({0x62, 0, 'k', 0, 0}), one})},
        {"a reference beyond the table", binaryList({bytes({0xA1, 1})})},
        {"more elements than the file has bytes",
         binaryList({bytes({0xAF, 0x13}) + bigEndian(quint64(1) << 62)})},
        {"a text longer than the file", binaryList({bytes({0x5F, 0x12, 0xFF, 0xFF, 0xFF, 0xFF})})},
        {"a UTF-16 text whose size overflows",
         binaryList({bytes({0x6F, 0x13}) + bigEndian(quint64(1) << 63)})},
        {"a count that is a text", binaryList({bytes({0x5F, 0x51, 'x'})})},
        {"an integer cut off by the table", binaryList({bytes({0x13, 0, 0})})},
        {"a null", binaryList({bytes({0xA1, 1}), bytes({0x00})})},
        {"a set", binaryList({bytes({0xC1, 1}), one})},
    };
    for (const auto& each : cases)
        EXPECT_EQ(format.parse(each.data).has_value(), each.isAccepted) << each.what;
}

TEST(LibplistFormatTest, boundsDatesSoThatTheyCanBeWrittenAgain) {
    for (const int exponent : {0x7F, 0xFF}) { // infinite, before and after
        const auto date =
            format.parse(binaryList({bytes({0x33, exponent, 0xF0, 0, 0, 0, 0, 0, 0})}));
        ASSERT_TRUE(date);
        EXPECT_TRUE(format.binary(*date)) << exponent;
    }
}

TEST(LibplistFormatTest, refusesListsThatAreCutShortAnywhere) {
    const QByteArray whole = *format.binary(everyType());
    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(format.parse(QByteArrayView(whole).first(length))) << length;
}

} // namespace
