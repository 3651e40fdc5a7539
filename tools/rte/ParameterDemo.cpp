// Demo step: a small camera-like parameter category and the signals its changes fire.
#include "Command.h"

#include <Core/Common/Exceptions/Exception.h>
#include <Core/Common/Parameter/C_Category.h>
#include <Core/Common/Parameter/C_Double.h>
#include <Core/Common/Parameter/C_Enumeration.h>
#include <Core/Common/Parameter/C_Integer.h>

namespace
{

using namespace RTE::Parameter;

std::shared_ptr<C_Category> makeCamera()
{
  auto camera = CreateCategory("Camera", "Camera", "Acquisition settings");
  auto sensor = CreateCategory("Sensor", "Sensor", "");
  sensor->AddChild(CreateDouble("ExposureTime", "Exposure time", "In milliseconds", ReadWrite, 10.0, 0.01, 1000.0,
                                C_Double::EditorSpinBox, 2));
  sensor->AddChild(CreateInteger("Gain", "Gain", "Analogue gain", ReadWrite, 1, 1, 16, C_Integer::EditorSlider));
  camera->AddChild(sensor);
  auto trigger = CreateEnumeration("TriggerMode", "Trigger mode", "How exposures start", C_Enumeration::EditorComboBox);
  trigger->AddEntry(Private::CreateEnumerationEntry("Internal", "Internal clock", "", 0));
  trigger->AddEntry(Private::CreateEnumerationEntry("External", "External input", "", 1));
  trigger->AddEntry(Private::CreateEnumerationEntry("Software", "Software command", "", 2));
  camera->AddChild(trigger);
  return camera;
}

void demoParameters(QTextStream& out)
{
  out << "A parameter tree is made of categories holding typed value nodes. Every real change\n"
         "fires Qt signals: first the untyped ValueChanged(), then the typed one.\n\n";
  auto camera = makeCamera();
  out << "Paths in the tree:";
  for (const QString& path : camera->missingNodesIn(CreateCategory("Empty", "", "")))
    out << " " << path;
  out << "\n\n";

  auto exposure = CastToDouble(camera->GetChild("Sensor.ExposureTime"));
  auto gain = CastToInteger(camera->GetChild("Sensor.Gain"));
  auto trigger = CastToEnumeration(camera->GetChild("TriggerMode"));

  QObject::connect(exposure.get(), &C_Node::ValueChanged,
                   [&out] { out << "    signal ExposureTime ValueChanged()\n"; });
  QObject::connect(exposure.get(), qOverload<double>(&C_Double::ValueChanged),
                   [&out](double v) { out << "    signal ExposureTime ValueChanged(" << v << ")\n"; });
  QObject::connect(exposure.get(), qOverload<DoubleRange>(&C_Double::RangeChanged),
                   [&out](DoubleRange r)
                   { out << "    signal ExposureTime RangeChanged(" << r.minimum << ", " << r.maximum << ")\n"; });
  QObject::connect(gain.get(), qOverload<int64_t>(&C_Integer::ValueChanged),
                   [&out](int64_t v) { out << "    signal Gain ValueChanged(" << v << ")\n"; });
  QObject::connect(trigger.get(), &C_Enumeration::CurrentEntryChanged,
                   [&out](EnumerationEntry e)
                   { out << "    signal TriggerMode CurrentEntryChanged(" << e->GetName() << ")\n"; });

  out << "  ExposureTime = 20 ms:\n";
  exposure->SetValue(20.0);
  out << "  ExposureTime = 20 ms again (no change, no signal):\n";
  exposure->SetValue(20.0);
  out << "  range narrowed to 0.01..5 ms (the value is clamped and announced first):\n";
  exposure->SetRange(0.01, 5.0);
  out << "  Gain = 32:\n";
  try
  {
    gain->SetValue(32);
  }
  catch (const RTE::Exception& e)
  {
    out << "    refused: " << e.message() << "\n";
  }
  out << "  TriggerMode = \"External\":\n";
  trigger->SetCurrentEntry(QStringLiteral("External"));
  out << "  signals off, Gain = 4 (stored silently):\n";
  camera->EnableSignals(false);
  gain->SetValue(4);
  camera->EnableSignals(true);
  out << "    Gain is now " << gain->toString() << "\n";

  out << "\n  A second camera takes over the values by name and kind:\n";
  auto copy = makeCamera();
  copy->CopyValues(camera);
  out << "    " << QString::fromLatin1(copy->GetChild("Sensor.ExposureTime")->dump()) << "\n"
      << "    " << QString::fromLatin1(copy->GetChild("TriggerMode")->dump()) << "\n";

  out << "\n  Looking up a missing path names the part that is missing:\n";
  try
  {
    camera->GetChild(QStringLiteral("Lens.Focus"));
  }
  catch (const RTE::Exception& e)
  {
    out << "    " << e.message() << "\n";
  }
}

const rte::DemoStepRegistration step{{50, QStringLiteral("Parameter nodes and categories"), &demoParameters}};

} // namespace
