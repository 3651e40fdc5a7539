// Shared by the `plugins` command and the plug-in demo step.
#pragma once

#include <Core/Common/Plugins/LibraryManager.h>

#include <QTextStream>

namespace rte
{

// Every registered plug-in, grouped by domain (in the order domains first registered):
// name and description.
void printRegisteredPlugins(QTextStream& out);

// Loads one plug-in library and prints its result and the plug-ins it registered;
// returns the result.
RTE::LibraryManager::LoadingResult loadAndReport(const QString& path, QTextStream& out);

} // namespace rte
