// The process-wide switchboard of optional features. Modules register the flags they
// know; the user's choices live in "FeatureFlags.xml" in the user settings folder; any
// code asks whether a feature is on.
//
//   auto& flags = Service::FeatureFlags::instance();
//   flags.registerFlag("FastPreview", "Fast preview", "Shows every fourth frame while recording",
//                      "Acquisition", false);
//   if (flags.isValid("FastPreview"))
//     ...;
//
// No operation throws; read and write failures are logged under "Core.Utilities". No lock
// is taken: calls on the one object must not overlap (register at start-up, ask later).
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QList>
#include <QString>

#include <map>

namespace Service
{

class CORECOMMON_EXPORT FeatureFlags
{
public:
  struct Flag
  {
    QString name;              // the key asked for by isValid
    QString label;             // short text for a settings page
    QString description;       // what switching the feature on does
    QString group;             // the section of the settings page it appears in
    bool defaultValue = false; // offered by a settings page; isValid does not use it
    bool state = false;        // the current state in this process, false at registration
  };

  static FeatureFlags& instance();

  // Appends a flag; a name registered already keeps its first texts and default.
  void registerFlag(const QString& name, const QString& label, const QString& description, const QString& group,
                    bool defaultValue);
  // Removes the first flag of that name, keeping the order of the rest.
  void unregisterFlag(const QString& name);
  bool isFlagRegistered(const QString& name) const;

  // Sets the current state of the registered flags of that name. With store, the value
  // is also entered into the stored flags and the file is rewritten (an unregistered
  // name is stored too).
  void setFlag(const QString& name, bool value, bool store);

  // True when a registered flag of exactly this name is on in this process; otherwise
  // the stored value, false when nothing is stored.
  bool isValid(const QString& name) const;

  // The registered flags in registration order; every registered name the file lacks is
  // entered into the stored flags as false (written with the next store).
  QList<Flag> getRegisteredFlagsForUI() const;

  // The stored flags by name, as read from the file and changed since.
  std::map<QString, bool> getStoredFlags() const;

  // The user settings folder + "FeatureFlags.xml"; empty while the locations are not
  // working (before the application object exists).
  QString getStoragePath() const;

  // The next query reads the file again.
  void readAgain();
  void clearRegistry();
  void clearXMLFlags();

  FeatureFlags(const FeatureFlags&) = delete;
  FeatureFlags& operator=(const FeatureFlags&) = delete;

private:
  FeatureFlags() = default;

  // Enters the file's flags into the stored flags while m_needsReading is set.
  void read() const;
  void updateXMLFile() const;

  mutable bool m_needsReading = true;
  QList<Flag> m_flags;
  mutable std::map<QString, bool> m_stored;
};

} // namespace Service
