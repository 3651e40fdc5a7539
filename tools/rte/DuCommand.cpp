// `rte du`: the byte total of a folder tree, the way background size scans measure it.
//
//   rte du /data/recordings
//   rte du /mnt/share/recordings --throttled   (10 ms per entry on the top five levels)
#include "Command.h"
#include "FileSystemTool.h"

#include <Core/Common/Exceptions/Exception.h>
#include <Core/Common/OperatingSystem/FileSystem.h>

#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFileInfo>

#include <atomic>
#include <thread>

namespace
{

int runDu(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Sums the sizes of all files below PATH (links not followed)."));
  parser.addHelpOption();
  const QCommandLineOption throttled(QStringLiteral("throttled"),
                                     QStringLiteral("Pause 10 ms per entry on the five top levels."));
  parser.addOption(throttled);
  parser.addPositionalArgument(QStringLiteral("PATH"), QStringLiteral("The folder to measure."));
  if (const std::optional<int> stop = rte::parseCommandLine(parser, arguments))
    return *stop;
  if (parser.positionalArguments().size() != 1)
  {
    rte::err() << "Usage: rte du PATH [--throttled]\n";
    return 2;
  }
  const QString path = parser.positionalArguments().first();
  if (!QFileInfo(RTE::FileSystem::FixPath(path)).isDir())
  {
    rte::err() << "rte du: not a folder: " << path << "\n";
    return 1;
  }
  RTE::ActivityControl control;
  std::uint64_t bytes = 0;
  QElapsedTimer timer;
  timer.start();
  std::atomic<bool> done{false};
  // DirSize reports no progress of its own: a ticker shows that the walk is alive.
  std::thread ticker(
      [&]
      {
        while (!done)
        {
          rte::showProgress(0.0, QStringLiteral("measuring %1 ... %2 s").arg(path).arg(timer.elapsed() / 1000));
          std::this_thread::sleep_for(std::chrono::milliseconds(250));
        }
      });
  bool cancelled = false;
  try
  {
    cancelled =
        rte::runCancellable(control, [&] { bytes = RTE::FileSystem::DirSize(path, control, parser.isSet(throttled)); });
  }
  catch (const RTE::Exception& e)
  {
    done = true;
    ticker.join();
    rte::err() << "\nrte du: " << e.message() << "\n";
    return 1;
  }
  done = true;
  ticker.join();
  rte::showProgress(100.0, QStringLiteral("done in %1 ms").arg(timer.elapsed()));
  rte::err() << "\n";
  rte::out() << bytes << "\t" << RTE::FileSystem::SizeToString(bytes) << "\t" << path
             << (cancelled ? "\t(cancelled: partial sum)" : "") << "\n";
  return cancelled ? 130 : 0;
}

const rte::CommandRegistration reg{{QStringLiteral("du"), QStringLiteral("Size of a folder tree"), &runDu}};

} // namespace
