// `rte copy`: copies a folder tree with a progress bar; Ctrl-C cancels and removes the
// partial copy.
//
//   rte copy /data/run1 /backup/run1
//   rte copy /data/run1 /backup/run1 --exclude .tmp --exclude .lock
#include "Command.h"
#include "FileSystemTool.h"

#include <Core/Common/Exceptions/Exception.h>
#include <Core/Common/OperatingSystem/ActivityFeedback.h>
#include <Core/Common/OperatingSystem/FileSystem.h>

#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>

namespace
{

int runCopy(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Copies the folder SRC to DST (which must not exist)."));
  parser.addHelpOption();
  const QCommandLineOption exclude(QStringLiteral("exclude"), QStringLiteral("Leave out files ending in TEXT."),
                                   QStringLiteral("TEXT"));
  parser.addOption(exclude);
  parser.addPositionalArgument(QStringLiteral("SRC"), QStringLiteral("Source folder."));
  parser.addPositionalArgument(QStringLiteral("DST"), QStringLiteral("Target folder."));
  if (const std::optional<int> stop = rte::parseCommandLine(parser, arguments))
    return *stop;
  if (parser.positionalArguments().size() != 2)
  {
    rte::err() << "Usage: rte copy SRC DST [--exclude TEXT]...\n";
    return 2;
  }
  const QString source = QDir(parser.positionalArguments()[0]).absolutePath();
  const QString target = QDir(parser.positionalArguments()[1]).absolutePath();
  RTE::ActivityControl control;
  RTE::ActivityFeedback feedback;
  QString current;
  QStringList skipped;
  QObject::connect(
      &feedback, &RTE::I_ActivityFeedback::messageReported, &feedback,
      [&](const QString& text)
      {
        if (text.startsWith(QStringLiteral("Skipped: ")))
          skipped << text.mid(9);
        else
          current = text.section(QStringLiteral(" ("), 0, 0);
      },
      Qt::DirectConnection);
  QObject::connect(
      &feedback, &RTE::I_ActivityFeedback::progressReported, &feedback,
      [&](double percent) { rte::showProgress(percent, current); }, Qt::DirectConnection);
  QElapsedTimer timer;
  timer.start();
  try
  {
    const QStringList excluded = parser.values(exclude);
    const bool cancelled = rte::runCancellable(
        control,
        [&] { RTE::FileSystem::CopyFolder(source, target, control, feedback, false, excluded.isEmpty(), excluded); });
    rte::err() << "\n";
    for (const QString& entry : skipped)
      rte::err() << "skipped: " << entry << "\n";
    if (cancelled)
    {
      rte::err() << "rte copy: cancelled; " << target << " removed\n";
      return 130;
    }
  }
  catch (const RTE::Exception& e)
  {
    rte::err() << "\nrte copy: " << e.message() << "\n";
    return 1;
  }
  rte::out() << "copied " << source << " to " << target << " in " << timer.elapsed() << " ms\n";
  return 0;
}

const rte::CommandRegistration reg{
    {QStringLiteral("copy"), QStringLiteral("Copy a folder tree with progress"), &runCopy}};

} // namespace
