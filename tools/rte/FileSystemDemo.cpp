// Demo step: file functions, a progress copy in a scratch folder, and the locations.
#include "Command.h"

#include <Core/Common/OperatingSystem/ActivityControl.h>
#include <Core/Common/OperatingSystem/ActivityFeedback.h>
#include <Core/Common/OperatingSystem/FileNameOps.h>
#include <Core/Common/OperatingSystem/FileSystem.h>
#include <Core/Common/OperatingSystem/Locations.h>
#include <Core/Common/OperatingSystem/TempFolder.h>

#include <QFile>

namespace
{

void demoFiles(QTextStream& out)
{
  namespace FS = RTE::FileSystem;
  out << "Paths are normalised once, for every file function:\n"
      << "  FixPath(\"data\\\\run1//img.raw\")  = " << FS::FixPath(QStringLiteral("data\\run1//img.raw")) << "\n"
      << "  MakeValidFileName(\"run: 1/2?\") = "
      << RTE::FileNameOps::MakeValidFileName(QStringLiteral("run: 1/2?"), QLatin1Char('_'), true) << "\n"
      << "  SizeToString(1536) = " << FS::SizeToString(1536)
      << ", SizeToString(5000000000) = " << FS::SizeToString(5000000000ULL) << "\n";
  const std::vector<QString> sorted =
      FS::SortFileInfoList(std::vector<QString>{"img10.png", "img2.png", "img1.png", "Img11.png"});
  out << "  natural order: ";
  for (const QString& name : sorted)
    out << name << " ";
  out << "\n\nA scratch folder below the temporary folder " << RTE::Locations::getTemporaryPath() << ":\n";

  const RTE::TempFolder scratch;
  const QString source = scratch.GetPath() + "/run1";
  for (int i = 0; i < 3; ++i)
  {
    FS::CreateDirectory(source + QStringLiteral("/cam%1").arg(i));
    QFile file(source + QStringLiteral("/cam%1/img%2.raw").arg(i).arg(i * 5));
    if (file.open(QIODevice::WriteOnly))
      file.write(QByteArray(600000 * (i + 1), 'x'));
  }
  RTE::ActivityControl control;
  out << "  DirSize(run1) = " << FS::SizeToString(FS::DirSize(source, control)) << "\n";
  RTE::ActivityFeedback feedback;
  QObject::connect(&feedback, &RTE::I_ActivityFeedback::messageReported,
                   [&](const QString& text) { out << "    " << text << "\n"; });
  out << "  CopyFolder(run1, run1-copy) reports:\n";
  FS::CopyFolder(source, scratch.GetPath() + "/run1-copy", control, feedback);
  out << "  copy holds " << FS::GetFiles(scratch.GetPath() + "/run1-copy", QStringLiteral("\\.raw$"), true).size()
      << " files; the scratch folder goes when the TempFolder object does.\n";
}

const rte::DemoStepRegistration step{{90, QStringLiteral("Files and locations"), &demoFiles}};

} // namespace
