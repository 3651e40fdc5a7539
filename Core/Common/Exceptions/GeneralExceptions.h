// The general-purpose exceptions: one class per kind of failure so that callers can
// catch each one separately. Each carries only a message (empty by default).
//
//   try { node.SetValue(v); }
//   catch (const RTE::OutOfRangeError& e) { showWarning(e.message()); }
#pragma once

#include <Core/Common/Exceptions/Exception.h>

// Declares an exception class with a default constructor (empty message) and one
// taking the message. The destructor is defined in the library so that the class's
// type information lives there and catching works across shared objects.
#define RTE_DECLARE_EXCEPTION(Name, Base)                                                                              \
  class CORECOMMON_EXPORT Name : public Base                                                                           \
  {                                                                                                                    \
  public:                                                                                                              \
    Name() : Base(QString()) {}                                                                                        \
    explicit Name(const QString& message) : Base(message) {}                                                           \
    ~Name() override;                                                                                                  \
  }

// As RTE_DECLARE_EXCEPTION, for classes that must always be given a message.
#define RTE_DECLARE_EXCEPTION_WITH_MESSAGE(Name, Base)                                                                 \
  class CORECOMMON_EXPORT Name : public Base                                                                           \
  {                                                                                                                    \
  public:                                                                                                              \
    explicit Name(const QString& message) : Base(message) {}                                                           \
    ~Name() override;                                                                                                  \
  }

namespace RTE
{

// A violated program invariant.
RTE_DECLARE_EXCEPTION(LogicError, Exception);
// A value or index outside its allowed range.
RTE_DECLARE_EXCEPTION(OutOfRangeError, Exception);
// An argument the operation cannot work with.
RTE_DECLARE_EXCEPTION(InvalidArgumentError, Exception);
// An input/output failure not tied to a named file (see FileError for those).
RTE_DECLARE_EXCEPTION(FileIOError, Exception);
// Contract checks.
RTE_DECLARE_EXCEPTION(AssertionFailed, Exception);
RTE_DECLARE_EXCEPTION_WITH_MESSAGE(PreconditionFailed, Exception);
RTE_DECLARE_EXCEPTION_WITH_MESSAGE(PostconditionFailed, Exception);
RTE_DECLARE_EXCEPTION(VerificationFailed, Exception);
// An operation this object does not support.
RTE_DECLARE_EXCEPTION(NotImplemented, Exception);
// A request refused in the current state.
RTE_DECLARE_EXCEPTION(InvalidRequest, Exception);
// A wait that ran out of time.
RTE_DECLARE_EXCEPTION(Timeout, Exception);

} // namespace RTE
