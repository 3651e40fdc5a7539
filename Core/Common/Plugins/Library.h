// One shared library loaded into the process.
//
//   RTE::Library library("/opt/app/plugins/libcodecs.so", true);
//   if (!library.isLoaded())
//     qWarning() << library.getError();
//
// The flag of the constructor is the enforce-unload setting: when set, destroying the
// object unloads the library (if nothing else in the process holds it); when clear,
// the library's code stays in the process after the object goes, which is what a
// plug-in library needs when plug-in objects may outlive this object. stayLoaded()
// pins the library for the rest of the process whatever the setting.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QCoreApplication>
#include <QString>

#include <memory>

class QLibrary;

namespace RTE
{

class CORECOMMON_EXPORT Library
{
  Q_DECLARE_TR_FUNCTIONS(RTE::Library)

public:
  // An exported function of the library, called without arguments.
  using Function = long long (*)();

  // Loads the file; the outcome is in isLoaded() and getError(). Never throws.
  Library(const QString& path, bool enforceUnload);
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  virtual ~Library();

  // The path given to the constructor.
  QString getName() const;
  // The loader's text for a failed load; empty when loading worked.
  QString getError() const;
  bool isLoaded() const;
  // The address of the exported symbol, or null when the library is not loaded or has
  // no such symbol.
  Function getProcAddress(const char* symbol);
  // Whether destroying the object unloads the library; ignored after stayLoaded().
  void setEnforceUnload(bool enforce);
  bool enforcesUnload() const;
  // The library is never unloaded, even when the object goes.
  void stayLoaded();
  // Unloads the library now unless stayLoaded() was called or another Library object of
  // the same path had loaded it already (that one owns the load); true when the code
  // was released. Later calls do nothing.
  bool unload();

private:
  QString m_name;
  QString m_error;
  std::unique_ptr<QLibrary> m_library;
  bool m_enforceUnload = false;
  bool m_stayLoaded = false;
  bool m_ownsLoad = false;
};

} // namespace RTE
