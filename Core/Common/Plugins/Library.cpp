#include <Core/Common/Plugins/Library.h>

#include <QLibrary>

namespace RTE
{

namespace
{

// The Windows loader's text for a 32-bit or damaged image says nothing to a user.
QString loaderError(const QString& text)
{
  if (text.contains(QLatin1String("Unknown error 0x000000c1")))
    return Library::tr("Library is not a valid 64 bit Windows application.");
  return text;
}

} // namespace

Library::Library(const QString& path, bool enforceUnload) :
    m_name(path),
    m_library(std::make_unique<QLibrary>(path)),
    m_enforceUnload(enforceUnload)
{
  // QLibrary objects for one file name share one handle, and unloading any of them
  // releases it: only the object that really loaded the file may unload it.
  const bool loadedElsewhere = m_library->isLoaded();
  // Linux loaders show no error dialogs, so there is no error mode to suppress and
  // restore around the load.
  if (!m_library->load())
    m_error = loaderError(m_library->errorString());
  else
    m_ownsLoad = !loadedElsewhere;
}

Library::~Library()
{
  if (m_enforceUnload)
    unload();
}

QString Library::getName() const
{
  return m_name;
}

QString Library::getError() const
{
  return m_error;
}

bool Library::isLoaded() const
{
  return m_library->isLoaded();
}

Library::Function Library::getProcAddress(const char* symbol)
{
  if (!symbol || !m_library->isLoaded())
    return nullptr;
  return reinterpret_cast<Function>(m_library->resolve(symbol));
}

void Library::setEnforceUnload(bool enforce)
{
  m_enforceUnload = enforce;
}

bool Library::enforcesUnload() const
{
  return m_enforceUnload && !m_stayLoaded;
}

void Library::stayLoaded()
{
  m_stayLoaded = true;
}

bool Library::unload()
{
  if (m_stayLoaded || !m_ownsLoad || !m_library->isLoaded())
    return false;
  m_ownsLoad = false;
  return m_library->unload();
}

} // namespace RTE
