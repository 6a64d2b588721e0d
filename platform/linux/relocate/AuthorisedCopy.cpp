// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/relocate/AuthorisedCopy.h"

#include "platform/linux/relocate/BundleCopy.h"
#include "platform/Log.h"

#include <QCryptographicHash>
#include <QProcess>
#include <QTemporaryFile>

namespace dorvane {

namespace {

// Run by root, who never opens the source: it could be exchanged, while the password is asked, for
// a link to what only root may read. What comes in as a stream is what the sum says, and is
// unpacked in a folder that nobody else can enter; files, folders and links only, and no file that
// has another name elsewhere. tar reads it from its input, of which it unpacks nothing compressed:
// no more comes out than went in. Nothing that the stream claims about owners and permissions
// counts. The script says everything itself. Its own failures all are 1, as 126 and 127 are
// pkexec's.
const QString script = QStringLiteral(R"script(
destination=$1 copy=$2 sum=$3 former=$2.former
PATH=/usr/sbin:/usr/bin:/sbin:/bin
export PATH
give_up() {
  rm -rf -- "$copy"
  [ -e "$destination" ] || [ ! -e "$former" ] || mv -T -- "$former" "$destination"
  exit 1
}
trap give_up HUP INT TERM
umask 022
mkdir -p -- "${destination%/*}" &&
  rm -rf -- "$copy" "$former" &&
  mkdir -m 700 -- "$copy" &&
  head -c 1G >"$copy/stream" &&
  [ "$(sha256sum <"$copy/stream")" = "$sum  -" ] &&
  mkdir -- "$copy/bundle" &&
  tar --extract --file - --directory "$copy/bundle" --no-same-owner \
    --no-same-permissions <"$copy/stream" &&
  [ -z "$(find "$copy/bundle" ! -type d ! -type l ! \( -type f -links 1 \) -print -quit)" ] &&
  chown -hR 0:0 -- "$copy/bundle" &&
  chmod -R a-st,u=rwX,go=rX -- "$copy/bundle" &&
  sync -f -- "$copy" &&
  { [ ! -e "$destination" ] || mv -T -- "$destination" "$former"; } &&
  mv -T -- "$copy/bundle" "$destination" || give_up
rm -rf -- "$copy" "$former"
exit 0
)script");

// What pkexec says when the person closes its window.
constexpr int dismissed = 126;

// The bundle as one file, and its sum; no sum when it could not be packed.
QByteArray packInto(QTemporaryFile& stream, const QString& source) {
    if (!stream.open())
        return {};
    QProcess tar;
    tar.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    tar.setStandardOutputFile(stream.fileName());
    tar.start(QStringLiteral("tar"), {QStringLiteral("--create"), QStringLiteral("--file=-"),
                                      QStringLiteral("--directory"), source, QStringLiteral(".")});
    QCryptographicHash sum(QCryptographicHash::Sha256);
    const bool isPacked = tar.waitForFinished(-1) && tar.exitStatus() == QProcess::NormalExit &&
                          tar.exitCode() == 0 && sum.addData(&stream);
    return isPacked ? sum.result().toHex() : QByteArray();
}

} // namespace

Relocator::Authorised copyAsRoot(const QString& source, const QString& destination,
                                 const QString& pkexec) {
    QTemporaryFile stream;
    const QByteArray sum = packInto(stream, source);
    if (sum.isEmpty()) {
        qCWarning(logRelocate).noquote() << "cannot pack" << source;
        return Relocator::Authorised::Failed;
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setProcessEnvironment(QProcessEnvironment());
    process.setStandardInputFile(stream.fileName());
    process.start(pkexec, {QStringLiteral("/bin/sh"), QStringLiteral("-c"), script,
                           QStringLiteral("dorvane"), destination, copyInProgress(destination),
                           QString::fromLatin1(sum)});
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit) {
        qCWarning(logRelocate).noquote() << pkexec << process.errorString();
        return Relocator::Authorised::Failed;
    }
    if (process.exitCode() == dismissed)
        return Relocator::Authorised::Refused;
    return process.exitCode() == 0 ? Relocator::Authorised::Done : Relocator::Authorised::Failed;
}

} // namespace dorvane
