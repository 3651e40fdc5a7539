// Demo step: a camera-like parameter tree from a registered definition, saved to a
// settings file, changed, and restored from the file.
#include "Command.h"
#include "ParameterPrint.h"

#include <Core/Common/Parameter/C_ParameterServer.h>
#include <Core/Common/Parameter/DefinitionAutoRegistration.h>
#include <Core/Common/Parameter/ParameterStorage.h>
#include <Core/Common/Storage/SettingsDocument.h>

#include <QFile>
#include <QTemporaryDir>

namespace
{

using namespace RTE::Parameter;

std::shared_ptr<C_Node> makeRegion()
{
  auto region = CreateCategory("Region", "Region", "A region of interest on the sensor");
  region->AddChild(CreateInteger("X", "X", "Left edge in pixels", ReadWrite, 0, 0, 2047, C_Integer::EditorSpinBox));
  region->AddChild(CreateInteger("Width", "Width", "In pixels", ReadWrite, 2048, 1, 2048, C_Integer::EditorSpinBox));
  return region;
}

std::shared_ptr<C_Tree> makeDemoCamera()
{
  auto tree = CreateTree();
  tree->AddChild(CreateDouble("ExposureTime", "Exposure time", "In milliseconds", ReadWrite, 10.0, 0.01, 1000.0,
                              C_Double::EditorSpinBox, 2));
  tree->AddChild(CreateInteger("Gain", "Gain", "Analogue gain", ReadWrite, 1, 1, 16, C_Integer::EditorSlider));
  auto trigger = CreateEnumeration("TriggerMode", "Trigger mode", "How exposures start", C_Enumeration::EditorComboBox);
  trigger->AddEntry(Private::CreateEnumerationEntry("Internal", "Internal clock", "", 0));
  trigger->AddEntry(Private::CreateEnumerationEntry("External", "External input", "", 1));
  tree->AddChild(trigger);
  auto regions = CreateList("Regions", "Regions", "Regions read out", &makeRegion, C_List::EditorTreeView);
  regions->Append(makeRegion());
  tree->AddChild(regions);
  return tree;
}

const DefinitionAutoRegistration definition("DemoCamera", &makeDemoCamera);

void demoParameterTree(QTextStream& out)
{
  out << "A definition registered at start-up makes the tree; the parameter server keeps one tree\n"
         "per definition and instance, so every part of a program asking for (DemoCamera, 0)\n"
         "shares it.\n\n";
  auto& server = C_ParameterServer::GetInstance();
  const auto camera = server.Get("DemoCamera", 0);
  out << "  server.Get(DemoCamera, 0) twice gives the same tree: "
      << (server.Get("DemoCamera", 0) == camera ? "yes" : "no") << "\n";
  rte::printParameters(out, camera->GetChildList(), 1);

  QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("camera.xml"));
  {
    Storage::SettingsDocument document(path, Storage::AutoSync::Off);
    Storage::SerializeTo(*document.CreateNode(QStringLiteral("Camera0")), camera);
    document.Save();
  }
  QFile file(path);
  file.open(QIODevice::ReadOnly);
  const QList<QByteArray> lines = file.readAll().split('\n');
  out << "\n  Saved to a settings file of " << lines.size() << " lines; it begins:\n";
  for (qsizetype i = 0; i < std::min<qsizetype>(lines.size(), 12); ++i)
    out << "    " << QString::fromUtf8(lines[i]).replace(QLatin1Char('\t'), QLatin1String("  ")) << "\n";

  out << "\n  Changed in memory: exposure 20 ms, gain 4, external trigger, a second region, and a\n"
         "  new node Cooling that the file does not know:\n";
  camera->GetDouble("ExposureTime")->SetValue(20.0);
  camera->GetInteger("Gain")->SetValue(4);
  camera->GetEnumeration("TriggerMode")->SetCurrentEntry(QStringLiteral("External"));
  camera->GetList("Regions")->Append(makeRegion());
  camera->AddChild(CreateBool("Cooling", true));
  rte::printParameters(out, camera->GetChildList(), 1);

  out << "\n  Read back from the file and copied into the live tree; the merge handler hears of\n"
         "  what the two structures do not share:\n";
  Storage::SettingsDocument document(path, Storage::AutoSync::Off);
  document.Load();
  std::shared_ptr<C_Tree> saved;
  Storage::DeserializeFrom(*document.GetNode(QStringLiteral("Camera0")), saved);
  camera->setMergeHandler(
      [&out](StructuralDiffs& diffs)
      {
        const auto paths = [](const QList<QString>& list)
        { return list.isEmpty() ? QStringLiteral("(none)") : list.join(QLatin1String(", ")); };
        out << "    only in the live tree: " << paths(diffs.targetOnlyPaths()) << "\n"
            << "    only in the file:      " << paths(diffs.sourceOnlyPaths()) << "\n";
      });
  camera->copyValuesFrom(*saved);
  camera->setMergeHandler(nullptr);
  rte::printParameters(out, camera->GetChildList(), 1);
  server.Remove("DemoCamera", 0);
}

const rte::DemoStepRegistration step{
    {60, QStringLiteral("Parameter trees, server and persistence"), &demoParameterTree}};

} // namespace
