// Stored data of a version this code cannot read. The message is empty; the version
// tells which one was met.
#pragma once

#include <Core/Common/Exceptions/Exception.h>

#include <QVersionNumber>

namespace RTE
{

class CORECOMMON_EXPORT VersionConflict : public Exception
{
public:
  // No version: version() is a null QVersionNumber.
  VersionConflict();
  VersionConflict(int major, int minor);
  ~VersionConflict() override;

  // major.minor, or a null version for the default-constructed exception.
  QVersionNumber version() const;

private:
  int m_major = -1;
  int m_minor = -1;
};

} // namespace RTE
