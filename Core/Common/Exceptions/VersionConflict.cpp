#include <Core/Common/Exceptions/VersionConflict.h>

namespace RTE
{

VersionConflict::VersionConflict() : Exception(QString()) {}

VersionConflict::VersionConflict(int major, int minor) : Exception(QString()), m_major(major), m_minor(minor) {}

VersionConflict::~VersionConflict() = default;

QVersionNumber VersionConflict::version() const
{
  if (m_major < 0 && m_minor < 0)
    return {};
  return QVersionNumber(m_major, m_minor);
}

} // namespace RTE
