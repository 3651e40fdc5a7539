// Starting helper programs without waiting for them; shared by Manuals and
// ExternalViewer. Not installed.
#pragma once

#include <QLoggingCategory>
#include <QString>
#include <QStringList>

Q_DECLARE_LOGGING_CATEGORY(lcDesktopLaunch)

namespace RTE::DesktopLaunch
{

// Starts program (a name looked up on PATH, or a path) with the arguments, detached, and
// returns its process id. Logs the start. Throws RTE::InvalidRequest, logged, when the
// program is not found, not executable or does not start; `purpose` names what the
// program was for in that message ("the manual 'Guide.pdf'").
qint64 startDetached(const QString& program, const QStringList& arguments, const QString& purpose);

} // namespace RTE::DesktopLaunch
