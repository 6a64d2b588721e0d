// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/OwnAddress.h"
#include "platform/Bundle.h"
#include "platform/linux/preferences/PropertyListCodec.h"
#include "tests/fuzz/FuzzSupport.h"

using namespace dorvane;
using dorvane::testing::require;

// An address on the first line, and an information file below it, which says whose it is.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const qsizetype end = input.indexOf('\n');
    const QString address = QString::fromUtf8(input.left(end));
    const auto information = PropertyListCodec().parse(input.mid(end + 1));
    const Bundle bundle(QStringLiteral("/Dorvane.app"),
                        information ? information->toMap() : QVariantMap());
    (void)bundle.infoString(QStringLiteral("BFManualURL"));
    const QStringList schemes = ownSchemes(bundle);
    const auto verb = verbOf(address, schemes);
    require(!verb || schemes.contains(address.section(u':', 0, 0), Qt::CaseInsensitive));
    require(!verb || !verb->contains(u'/'));
    require(!verbOf(address, {}));
    return 0;
}
