#include <Zn/Utils/Locations.h>

#include <QStandardPaths>

namespace Zn::Locations
{

Path appDataPath()
{
  return Path(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
}

} // namespace Zn::Locations
