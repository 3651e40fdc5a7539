// Demo step: a settings document written to a file, read back, and a lenient read.
#include "Command.h"

#include <Core/Common/Storage/SettingsDocument.h>
#include <Core/Common/Storage/ValueSerialization.h>

#include <QDir>
#include <QPointF>
#include <QStringList>
#include <QTemporaryDir>

namespace
{

void demoStorage(QTextStream& out)
{
  QTemporaryDir dir;
  const QString path = dir.filePath(QStringLiteral("camera/settings.xml"));
  out << "A settings document is a tree of named nodes with a class and a version; leaves hold\n"
         "typed values, and items of a collection are numbered.\n\n";
  {
    Storage::SettingsDocument document(path, Storage::AutoSync::LoadAndSave);
    document.SetClass(QStringLiteral("CameraSetup"));
    document.SetVersion(2);
    document.Set(QStringLiteral("Exposure"), 0.0125);
    document.Set(QStringLiteral("Gain"), 0.1f);
    document.Set(QStringLiteral("Note"), QStringLiteral("first line\nsecond line"));
    Storage::SerializeTo(*document.CreateNode(QStringLiteral("Origin")), QPointF(12.5, -3));
    for (int frame : {10, 20, 40})
      document.AppendCollectionItem(QStringLiteral("Frames"), frame);
    out << "Written to " << QDir(dir.path()).relativeFilePath(path) << " when the document goes out of scope.\n";
  }

  Storage::SettingsDocument loaded(path, Storage::AutoSync::LoadOnly);
  out << "\nThe file, read back:\n" << loaded.GetContent() << "\n\n";
  QPointF origin;
  Storage::DeserializeFrom(*loaded.GetNode(QStringLiteral("Origin")), origin);
  out << "  class " << loaded.GetClass() << ", version " << loaded.GetVersion() << "\n"
      << "  Exposure = " << loaded.Get<double>(QStringLiteral("Exposure"), 0.0) << "\n"
      << "  Origin = (" << origin.x() << ", " << origin.y() << ")\n"
      << "  Frames[2] = " << loaded.GetCollectionItem<int>(QStringLiteral("Frames"), 2, 0) << "\n"
      << "  Note keeps its line break: "
      << (loaded.Get<QString>(QStringLiteral("Note"), QString()).contains(QLatin1Char('\n')) ? "yes" : "no") << "\n"
      << "  a missing leaf reads as its default: Missing = " << loaded.Get<int>(QStringLiteral("Missing"), 42) << "\n";
  out << "  reading Gain (a float) as an int gives " << loaded.Get<int>(QStringLiteral("Gain"), -1)
      << " and marks the document: HasReports = " << (loaded.HasReports() ? "true" : "false") << "\n";
}

const rte::DemoStepRegistration step{{20, QStringLiteral("Settings storage"), &demoStorage}};

} // namespace
