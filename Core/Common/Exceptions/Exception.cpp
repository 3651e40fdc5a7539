#include <Core/Common/Exceptions/Exception.h>

#include "ExceptionsLog_p.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <typeinfo>

// Debug level is off unless enabled by rules ("Core.Exception.debug=true"): many exceptions
// are caught and handled, and a host should not see each one on its console.
Q_LOGGING_CATEGORY(lcException, "Core.Exception", QtInfoMsg)

namespace RTE
{

namespace
{

QString demangled(const std::type_info& type)
{
  int status = 0;
  std::unique_ptr<char, decltype(&std::free)> name(abi::__cxa_demangle(type.name(), nullptr, nullptr, &status),
                                                   &std::free);
  return QString::fromLatin1(status == 0 && name ? name.get() : type.name());
}

} // namespace

Exception::Exception(const QString& message) : m_message(message) {}

Exception::~Exception() = default;

const char* Exception::what() const noexcept
{
  try
  {
    m_what = m_message.toLatin1();
    return m_what.constData();
  }
  catch (...)
  {
    return typeid(*this).name();
  }
}

void Exception::setMessage(const QString& message)
{
  m_message = message;
}

void Exception::setLocation(const QString& file, unsigned int line)
{
  static const QString marker = QStringLiteral("Sources");
  const qsizetype p = file.lastIndexOf(marker);
  m_sourceFile = p < 0 ? file : QStringLiteral("<sources>") + file.mid(p + marker.size());
  m_sourceLine = line;
}

QString Exception::typeName() const
{
  return demangled(typeid(*this));
}

QString Exception::logText() const noexcept
{
  try
  {
    return QStringLiteral("%1\n%2 (line: %3) \n%4")
        .arg(m_message, m_sourceFile, QString::number(m_sourceLine), typeName());
  }
  catch (...)
  {
    return {};
  }
}

void Exception::log() const noexcept
{
  try
  {
    qCDebug(lcException).noquote() << logText();
  }
  catch (...)
  {
    // A report that cannot be written must not replace the exception being raised.
  }
}

} // namespace RTE
