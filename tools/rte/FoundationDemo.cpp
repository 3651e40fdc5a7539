// Demo step: exceptions with their locations, thread reports, developer texts and the
// application logger.
#include "Command.h"

#include <Core/Common/Exceptions/FileOpenError.h>
#include <Core/Common/Exceptions/ParseError.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Exceptions/ThreadExceptionReport.h>
#include <Core/Common/Logging/ApplicationLogger.h>
#include <Core/Common/Logging/DeveloperInfoText.h>
#include <Core/Common/Utilities/VisibilityLevel.h>

#include <QFile>

#include <thread>

namespace
{

void demoFoundation(QTextStream& out)
{
  out << "Every failure is an RTE::Exception raised through RTE::Raise, which records where it\n"
         "happened and logs it before throwing.\n\n";
  try
  {
    RTE::Raise(RTE::ParseError(QStringLiteral("unexpected token"), 3, 14));
  }
  catch (const RTE::ParseError& e)
  {
    out << "  caught " << e.typeName() << ": " << e.message() << "\n"
        << "  raised at " << e.sourceFile() << ":" << e.sourceLine() << "\n"
        << "  what(): " << e.what() << "\n"
        << "  logged to \"Core.Exception\" (shown with QT_LOGGING_RULES=\"Core.Exception.debug=true\"):\n    "
        << e.logText().replace(QLatin1Char('\n'), QStringLiteral("\n    ")) << "\n";
    RTE::ThreadExceptionReport::Add(e.message());
  }

  QFile missing(QStringLiteral("/nonexistent/settings.xml"));
  if (!missing.open(QIODevice::ReadOnly))
  {
    try
    {
      RTE::Raise(RTE::FileOpenError(missing, missing.fileName()));
    }
    catch (const RTE::FileError& e)
    {
      out << "  caught " << e.typeName() << ": " << e.message() << "\n";
    }
  }

  std::thread worker([] { RTE::ThreadExceptionReport::Add(QStringLiteral("Timeout waiting for camera")); });
  worker.join();
  out << "\nThe per-thread exception report, as a crash report would show it:\n" << RTE::ThreadExceptionReport::Dump();
  RTE::ThreadExceptionReport::Clean();

  out << "\nDeveloper texts reach listeners only at visibility level 2:\n";
  auto& developerText = RTE::Logging::DeveloperInfoText::instance();
  const auto connection = QObject::connect(&developerText, &RTE::Logging::DeveloperInfoText::reportInfoText,
                                           [&out](const QString& text) { out << "  [developer] " << text << "\n"; });
  for (int level : {0, 1, 2})
  {
    Service::SetVisibilityLevel(level);
    out << "  level " << level << ": ";
    developerText.logInfoText(QStringLiteral("cache rebuilt in 12 ms"));
    if (level < 2)
      out << "(nothing)\n";
  }
  QObject::disconnect(connection);
  Service::SetVisibilityLevel(0);

  out << "\nThe application logger's line for an event:\n  "
      << RTE::ApplicationLogger::composeLine(QStringLiteral("Demo"), QStringLiteral("foundation step")) << "\n";
}

const rte::DemoStepRegistration step{{10, QStringLiteral("Errors and logging"), &demoFoundation}};

} // namespace
