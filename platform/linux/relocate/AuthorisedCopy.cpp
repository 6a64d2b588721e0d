// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/relocate/AuthorisedCopy.h"

#include "platform/linux/relocate/BundleCopy.h"
#include "platform/Log.h"

#include <QProcess>
#include <QStandardPaths>

namespace dorvane {

namespace {

// Run by root, so it says everything itself and takes the paths as words. Nothing that the source
// claims about owners and permissions counts. Its own failures all are 1, as 126 and 127 are
// pkexec's.
const QString script = QStringLiteral(R"(
source=$1 destination=$2 copy=$3 former=$3.former
give_up() {
  rm -rf -- "$copy"
  [ -e "$destination" ] || [ ! -e "$former" ] || mv -T -- "$former" "$destination"
  exit 1
}
trap give_up HUP INT TERM
umask 022
mkdir -p -- "${destination%/*}" &&
  rm -rf -- "$copy" "$former" &&
  cp -RP -- "$source" "$copy" &&
  chown -hR 0:0 -- "$copy" &&
  chmod -R a-st,u=rwX,go=rX -- "$copy" &&
  diff -r --no-dereference -- "$source" "$copy" &&
  sync -f -- "$copy" &&
  { [ ! -e "$destination" ] || mv -T -- "$destination" "$former"; } &&
  mv -T -- "$copy" "$destination" || give_up
rm -rf -- "$former"
exit 0
)");

// What pkexec says when the person closes its window.
constexpr int dismissed = 126;

} // namespace

Relocator::Authorised copyAsRoot(const QString& source, const QString& destination) {
    const QString pkexec = QStandardPaths::findExecutable(QStringLiteral("pkexec"));
    if (pkexec.isEmpty()) {
        qCWarning(logRelocate, "there is no pkexec");
        return Relocator::Authorised::Failed;
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(pkexec,
                  {QStringLiteral("/bin/sh"), QStringLiteral("-c"), script,
                   QStringLiteral("dorvane"), source, destination, copyInProgress(destination)});
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit)
        return Relocator::Authorised::Failed;
    if (process.exitCode() == dismissed)
        return Relocator::Authorised::Refused;
    return process.exitCode() == 0 ? Relocator::Authorised::Done : Relocator::Authorised::Failed;
}

} // namespace dorvane
