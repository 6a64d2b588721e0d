// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/preferences/PropertyListCodec.h"

#include "tests/support/Files.h"
#include "tests/support/Testing.h"

#include <QTimeZone>

#include <limits>

using namespace dorvane::testing;

namespace {

const PropertyListCodec format;

QVariantMap everyType() {
    return {{u"true"_qs, true},
            {u"false"_qs, false},
            {u"negative"_qs, qint64(-5)},
            {u"least"_qs, std::numeric_limits<qint64>::min()},
            {u"huge"_qs, std::numeric_limits<quint64>::max()},
            {u"real"_qs, 0.1},
            {u"date"_qs, QDateTime(QDate(2026, 11, 21), QTime(3, 15, 7, 89), QTimeZone::utc())},
            {u"distant"_qs, QDateTime(QDate(4001, 1, 1), QTime(0, 0), QTimeZone::utc())},
            {u"text"_qs, u"Frühstück ⏰ <&>"_qs},
            {u"none"_qs, QString()},
            {QString(), u"under the empty key"_qs},
            {u"bytes"_qs, QByteArray("\0\xFF\0", 3)},
            {u"uid"_qs, QVariant::fromValue(PropertyListUid{70000})},
            {u"list"_qs, QVariantList{qint64(1), QVariantList(), QVariantMap(), u"x"_qs}}};
}

TEST(PropertyListCodecTest, everyTypeSurvivesTheBinaryFormat) {
    const QVariantMap original = everyType();
    const auto bytes = format.binary(original);
    ASSERT_TRUE(bytes);
    const auto parsed = format.parse(*bytes);
    ASSERT_TRUE(parsed);
    const QVariantMap copy = parsed->toMap();
    EXPECT_EQ(copy, original);
    for (auto entry = original.cbegin(); entry != original.cend(); ++entry)
        EXPECT_EQ(copy[entry.key()].typeId(), entry.value().typeId()) << qPrintable(entry.key());
}

// The same values as another writer puts them, in both formats.
TEST(PropertyListCodecTest, readsWhatOthersWrite) {
    const auto fileOf = [](const char* name) {
        return format.parse(
            contentsOf(QStringLiteral(DORVANE_SEEDS "/fuzz_property_list/") + QLatin1String(name)));
    };
    const QDateTime date(QDate(2026, 11, 21), QTime(3, 15, 7), QTimeZone::utc());
    QVariantMap expected{{u"t"_qs, true},
                         {u"f"_qs, false},
                         {u"i"_qs, qint64(-5)},
                         {u"h"_qs, std::numeric_limits<quint64>::max()},
                         {u"r"_qs, 0.1},
                         {u"d"_qs, date},
                         {u"s"_qs, u"a & b é <c>"_qs},
                         {u"b"_qs, QByteArray("\0\xFF\0", 3)},
                         {u"l"_qs, QVariantList{qint64(1), QVariantList(), QVariantMap()}},
                         {u"x"_qs, QVariant::fromValue(PropertyListUid{3})}};
    EXPECT_EQ(fileOf("every-type.plist"), QVariant(expected));
    expected[u"b"_qs] = QByteArray("\0\xFF", 2);
    expected[u"s"_qs] = u"Tee"_qs;
    expected[u"u"_qs] = u"Größe ⏰"_qs;
    expected[u"x"_qs] = QVariant::fromValue(PropertyListUid{300});
    EXPECT_EQ(fileOf("every-type-binary.plist"), QVariant(expected));
}

QByteArray hex(quint64 value, int bytes) {
    return QByteArray::number(value, 16).rightJustified(2 * bytes, '0');
}

// A binary list of these objects, each in hexadecimal, with offsets of two bytes and references of
// one; the first one is the root.
QByteArray binaryList(const QByteArrayList& objects) {
    const QByteArray magic = "bplist00";
    QByteArray list;
    QByteArray offsets;
    const auto end = [&] { return quint64(magic.size() + list.size() / 2); };
    for (const QByteArray& object : objects) {
        offsets += hex(end(), 2);
        list += object;
    }
    return magic + QByteArray::fromHex(list + offsets + "0000000000000201" +
                                       hex(quint64(objects.size()), 8) + hex(0, 8) + hex(end(), 8));
}

// Arrays that hold the next array `times` times over, `levels` deep.
QByteArray nestedArrays(int levels, int times) {
    QByteArrayList objects;
    for (int level = 1; level < levels; ++level)
        objects << hex(quint64(0xA0 | times), 1) + hex(quint64(level), 1).repeated(times);
    return binaryList(objects << "a0");
}

TEST(PropertyListCodecTest, refusesHostileLists) {
    const QByteArray one = "1001", key = "516b", pair = "d10102";
    const struct {
        const char* what;
        QByteArray data;
        bool isAccepted = false;
    } cases[] = {
        {"an honest list, to see why the others fail", binaryList({pair, key, one}), true},
        {"nothing", ""},
        {"entities that multiply",
         "<!DOCTYPE plist [<!ENTITY a 'ha'>]><plist><string>&a;&a;</string></plist>"},
        {"deep nesting in XML", "<plist>" + QByteArray("<array>").repeated(100'000) +
                                    QByteArray("</array>").repeated(100'000) + "</plist>"},
        {"honest nesting", nestedArrays(50, 1), true},
        {"deep nesting", nestedArrays(200, 1)},
        {"an array in itself", binaryList({"a100"})},
        {"a branch shared a billion times", nestedArrays(31, 2)},
        {"a key that is no text", binaryList({"d10101", one})},
        {"more elements than bytes", binaryList({"af134000000000000000"})},
        {"a null", binaryList({"a101", "00"})},
    };
    for (const auto& each : cases)
        EXPECT_EQ(format.parse(each.data).has_value(), each.isAccepted) << each.what;
}

TEST(PropertyListCodecTest, boundsDatesSoThatTheyCanBeWrittenAgain) {
    for (const char* infinity : {"337ff0000000000000", "33fff0000000000000"}) {
        const auto date = format.parse(binaryList({infinity}));
        ASSERT_TRUE(date);
        EXPECT_TRUE(format.binary(*date)) << infinity;
    }
}

TEST(PropertyListCodecTest, refusesListsThatAreCutShortAnywhere) {
    const QByteArray whole = *format.binary(everyType());
    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(format.parse(QByteArrayView(whole).first(length))) << length;
}

} // namespace
