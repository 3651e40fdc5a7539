// Linux pieces shared by the operating-system services and the system information,
// and the detection rules they follow (exported for the tests); not installed.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QByteArray>
#include <QMap>
#include <QString>

#include <cstdint>

namespace RTE::detail
{

// The whole content of a file under /proc or /sys (which report a size of 0), at most
// 1 MiB; empty if it cannot be read.
QByteArray readSystemFile(const QString& path);

// Whether the process runs in a remote session: SSH (SSH_CONNECTION, SSH_CLIENT,
// SSH_TTY) or a remote desktop (XRDP_SESSION, or a session type of "xrdp"/"vnc").
bool isRemoteSession();

// The KEY=value lines of an os-release file; values unquoted and unescaped.
CORECOMMON_EXPORT QMap<QString, QString> parseOsRelease(const QByteArray& content);

// The 16-bit language id (primary language in the low 10 bits, sub-language above) of
// a POSIX locale name such as "de_DE.UTF-8" or "fr_CA"; "C" and "POSIX" are English
// (United States); 0 for an empty name or a language without an id here.
CORECOMMON_EXPORT std::uint16_t languageIdFromLocaleName(const QString& localeName);

// Whether the firmware's product name and vendor (DMI) or the processor flags (the
// "flags" line of /proc/cpuinfo) show a virtual machine.
CORECOMMON_EXPORT bool isVirtualMachineFrom(const QString& productName, const QString& sysVendor,
                                            const QByteArray& cpuFlags);

} // namespace RTE::detail
