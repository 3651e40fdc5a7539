// A file-system path as the companion library passes it around: one text with "/"
// separators, no trailing one unless it is the root.
//
//   const Zn::Path data = Zn::Locations::appDataPath();
//   QFile settings(data.toString() + "/settings.xml");
#pragma once

#include <Zn/Utils/ZnUtilsExport.h>

#include <QString>

namespace Zn
{

class ZN_UTILS_EXPORT Path
{
public:
  Path() = default;
  // Backslashes become "/", "." and ".." parts and doubled separators are resolved.
  explicit Path(const QString& text);

  QString toString() const;
  bool isEmpty() const;
  // This path + "/" + relative.
  Path operator/(const QString& relative) const;
  bool operator==(const Path& other) const = default;

private:
  QString m_text;
};

} // namespace Zn
