// Demo step: geometry values, their text and settings forms, and a rigid motion undone.
#include "Command.h"

#include <Core/Common/Math/Euclidean.h>
#include <Core/Common/Math/Rectangle2T.h>
#include <Core/Common/Storage/SettingsStringBasedDocument.h>

#include <sstream>

namespace
{

template <typename Value>
QString text(const Value& value)
{
  std::ostringstream out;
  out << value;
  return QString::fromStdString(out.str());
}

void demoGeometry(QTextStream& out)
{
  Math::Rectangle2T<int> roi(Math::Point2T<int>(0, 0), Math::Size2T<int>(10, 10));
  out << "A region of interest from (0,0) with size " << text(Math::Size2T<int>(10, 10)) << ": " << text(roi)
      << "\nIts bounds belong to it: Contains((10,10)) = "
      << (roi.Contains(Math::Point2T<int>(10, 10)) ? "true" : "false");
  roi |= Math::Point2T<int>(-5, 3);
  out << "; grown to include (-5,3): " << text(roi) << "\n\nIn a settings node:\n";
  Storage::SettingsStringBasedDocument document;
  roi.SerializeTo(*document.CreateNode(QStringLiteral("Roi")));
  out << document.GetNode(QStringLiteral("Roi"))->ToString() << "\n";

  // A quarter turn about z, written out: AboutZ(pi / 2) leaves cos(pi / 2) = 6e-17 where
  // this has 0.
  const Math::Euclidean cameraToWorld(Math::Vector3T<double>(0, 0, 500),
                                      Math::RotationMatrix3(0, -1, 0, 1, 0, 0, 0, 0, 1));
  const Math::Point3T<double> corner(10, 0, 0);
  const Math::Point3T<double> world = cameraToWorld * corner;
  out << "\nA camera pose: a quarter turn about z, then 500 along z. The point " << text(corner) << "\nlies at "
      << text(world) << " in the world and comes back as " << text(cameraToWorld.Inverted() * world)
      << " through the inverse pose.\n";
}

const rte::DemoStepRegistration step{{90, QStringLiteral("Geometry"), &demoGeometry}};

} // namespace
