#include <Zn/Utils/Path.h>

#include <QDir>

namespace Zn
{

Path::Path(const QString& text) :
    m_text(text.isEmpty() ? QString() : QDir::cleanPath(QString(text).replace(QLatin1Char('\\'), QLatin1Char('/'))))
{
}

QString Path::toString() const
{
  return m_text;
}

bool Path::isEmpty() const
{
  return m_text.isEmpty();
}

Path Path::operator/(const QString& relative) const
{
  return Path(m_text + QLatin1Char('/') + relative);
}

} // namespace Zn
