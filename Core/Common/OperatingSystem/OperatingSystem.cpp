#include <Core/Common/OperatingSystem/OperatingSystem.h>

#include "OperatingSystemLog_p.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/OperatingSystem/ThreadHandle.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QObject>

Q_LOGGING_CATEGORY(lcOperatingSystem, "Core.OperatingSystem", QtInfoMsg)

namespace RTE
{

namespace
{

// Stores callback in slot unless that would replace a callback already there.
template <typename Callback>
void storeOnce(Callback& slot, Callback callback, const char* signalName)
{
  if (callback && slot)
    Raise(VerificationFailed(QObject::tr("Don't register for %1 twice.").arg(QLatin1String(signalName))));
  slot = std::move(callback);
}

} // namespace

OperatingSystem& OperatingSystem::GetInstance()
{
  static OperatingSystem instance;
  return instance;
}

bool OperatingSystem::IsLanguageEnglish() const
{
  return (m_languageId & 0x3FF) == 0x09;
}

bool OperatingSystem::IsLanguageGerman() const
{
  return (m_languageId & 0x3FF) == 0x07;
}

bool OperatingSystem::IsLanguageFrench() const
{
  return (m_languageId & 0x3FF) == 0x0C;
}

std::uint16_t OperatingSystem::GetLanguageID() const
{
  return m_languageId;
}

void OperatingSystem::registerForApplicationCrash(CrashCallback callback)
{
  std::lock_guard lock(m_mutex);
  if (callback && m_crashCallback.load())
    Raise(VerificationFailed(QObject::tr("Don't register for %1 twice.").arg(QLatin1String("SignalApplicationCrash"))));
  if (!callback)
  {
    m_crashCallback.store(nullptr);
    return;
  }
  // The previous callback stays allocated: a crashing thread may be running it now.
  m_crashCallbacks.push_back(std::make_unique<CrashCallback>(std::move(callback)));
  m_crashCallback.store(m_crashCallbacks.back().get());
}

void OperatingSystem::registerForShutdownSignal(EventCallback callback)
{
  std::lock_guard lock(m_mutex);
  storeOnce(m_shutdownCallback, std::move(callback), "SignalShutdown");
}

void OperatingSystem::registerForSuspendSignal(EventCallback callback)
{
  std::lock_guard lock(m_mutex);
  storeOnce(m_suspendCallback, std::move(callback), "SignalSuspend");
}

void OperatingSystem::registerForResumeSignal(EventCallback callback)
{
  std::lock_guard lock(m_mutex);
  storeOnce(m_resumeCallback, std::move(callback), "SignalResume");
}

void OperatingSystem::callSignalApplicationCrash(int signalNumber, siginfo_t* info, ucontext_t* context)
{
  if (CrashCallback* callback = m_crashCallback.load())
    (*callback)(signalNumber, info, context);
}

// The callbacks run outside the lock, so that they may register callbacks themselves.
void OperatingSystem::callSignalShutdown()
{
  EventCallback callback;
  {
    std::lock_guard lock(m_mutex);
    callback = m_shutdownCallback;
  }
  if (callback)
    callback();
}

void OperatingSystem::callSignalSuspend()
{
  EventCallback callback;
  {
    std::lock_guard lock(m_mutex);
    callback = m_suspendCallback;
  }
  if (callback)
    callback();
}

void OperatingSystem::callSignalResume()
{
  EventCallback callback;
  {
    std::lock_guard lock(m_mutex);
    callback = m_resumeCallback;
  }
  if (callback)
    callback();
}

void OperatingSystem::registerSystemEvents()
{
  if (!ThreadHandle::IsMainThread())
    Raise(VerificationFailed(QObject::tr("Must be called from main thread.")));
  if (!QCoreApplication::instance() || !QAbstractEventDispatcher::instance())
    Raise(Exception(QObject::tr("Qt event loop not running.")));
  installSystemEvents();
}

bool OperatingSystem::IsSystemSleepTimerPrevented() const
{
  std::lock_guard lock(m_mutex);
  return m_sleepPrevented;
}

} // namespace RTE
