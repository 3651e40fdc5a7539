#include <Core/Common/Storage/Settings.h>

#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Storage/StorageExceptions.h>

#include <fmt/format.h>

#include <limits>
#include <type_traits>

namespace Storage
{

namespace
{

// Type names of the "class" attribute of leaves; "uint32_t" is spelt so in the format.
template <typename T>
struct ValueType;
template <>
struct ValueType<QString>
{
  static constexpr const char* name = "string";
};
template <>
struct ValueType<signed char>
{
  static constexpr const char* name = "int8";
};
template <>
struct ValueType<char>
{
  static constexpr const char* name = "char";
};
template <>
struct ValueType<unsigned char>
{
  static constexpr const char* name = "uint8";
};
template <>
struct ValueType<short>
{
  static constexpr const char* name = "int16";
};
template <>
struct ValueType<unsigned short>
{
  static constexpr const char* name = "uint16";
};
template <>
struct ValueType<int>
{
  static constexpr const char* name = "int32";
};
template <>
struct ValueType<unsigned int>
{
  static constexpr const char* name = "uint32_t";
};
template <>
struct ValueType<long long>
{
  static constexpr const char* name = "int64";
};
template <>
struct ValueType<unsigned long long>
{
  static constexpr const char* name = "uint64";
};
template <>
struct ValueType<float>
{
  static constexpr const char* name = "float";
};
template <>
struct ValueType<double>
{
  static constexpr const char* name = "double";
};
template <>
struct ValueType<bool>
{
  static constexpr const char* name = "bool";
};

template <typename T>
QString TypeName()
{
  return QString::fromLatin1(ValueType<T>::name);
}

// Texts in the C locale, through fmt (never the user's locale).
template <typename T>
QString ToText(const T& value)
{
  if constexpr (std::is_same_v<T, QString>)
    return value;
  else if constexpr (std::is_same_v<T, bool>)
    return value ? QStringLiteral("true") : QStringLiteral("false");
  else if constexpr (std::is_same_v<T, char>)
    return QString::fromLatin1(fmt::format_int(static_cast<unsigned char>(value)).c_str());
  else if constexpr (std::is_same_v<T, float>)
    return QString::fromLatin1(fmt::format("{:.10g}", static_cast<double>(value)));
  else if constexpr (std::is_same_v<T, double>)
    return QString::fromLatin1(fmt::format("{:.15g}", value));
  else
    return QString::fromLatin1(fmt::format_int(value).c_str());
}

// A text that does not parse, or does not fit T, gives 0.
template <typename T>
T FromText(const QString& text)
{
  bool ok = false;
  if constexpr (std::is_same_v<T, QString>)
    return text;
  else if constexpr (std::is_same_v<T, bool>)
    return text == QLatin1String("true");
  else if constexpr (std::is_same_v<T, char>)
  {
    const qulonglong value = text.toULongLong(&ok, 10);
    return ok ? static_cast<char>(static_cast<unsigned char>(value & 0xFFu)) : char(0);
  }
  else if constexpr (std::is_same_v<T, float>)
  {
    const float value = text.toFloat(&ok);
    return ok ? value : 0.0f;
  }
  else if constexpr (std::is_same_v<T, double>)
  {
    const double value = text.toDouble(&ok);
    return ok ? value : 0.0;
  }
  else if constexpr (std::is_signed_v<T>)
  {
    const qlonglong value = text.toLongLong(&ok, 10);
    return ok && value >= std::numeric_limits<T>::min() && value <= std::numeric_limits<T>::max()
               ? static_cast<T>(value)
               : T(0);
  }
  else
  {
    const qulonglong value = text.toULongLong(&ok, 10);
    return ok && value <= std::numeric_limits<T>::max() ? static_cast<T>(value) : T(0);
  }
}

const QString& Alphabet()
{
  static const QString letters = QStringLiteral("abcdefghijklmnopqrstuvwxyz");
  return letters;
}

} // namespace

bool IsValidSettingsName(const QString& name)
{
  if (name.isEmpty())
    return false;
  const QString lower = name.toLower();
  static const QString further = Alphabet() + QStringLiteral("0123456789_");
  if (!Alphabet().contains(lower.front()))
    return false;
  for (qsizetype i = 1; i < lower.size(); ++i)
  {
    if (!further.contains(lower.at(i)))
      return false;
  }
  return !lower.startsWith(QLatin1String("xml"));
}

Settings::~Settings() = default;

template <typename T>
T Settings::Get() const
{
  return FromText<T>(GetValue(TypeName<T>()));
}

template CORECOMMON_EXPORT signed char Settings::Get<signed char>() const;
template CORECOMMON_EXPORT char Settings::Get<char>() const;
template CORECOMMON_EXPORT unsigned char Settings::Get<unsigned char>() const;
template CORECOMMON_EXPORT short Settings::Get<short>() const;
template CORECOMMON_EXPORT unsigned short Settings::Get<unsigned short>() const;
template CORECOMMON_EXPORT int Settings::Get<int>() const;
template CORECOMMON_EXPORT unsigned int Settings::Get<unsigned int>() const;
template CORECOMMON_EXPORT float Settings::Get<float>() const;
template CORECOMMON_EXPORT double Settings::Get<double>() const;
template CORECOMMON_EXPORT QString Settings::Get<QString>() const;
template CORECOMMON_EXPORT long long Settings::Get<long long>() const;
template CORECOMMON_EXPORT unsigned long long Settings::Get<unsigned long long>() const;
template CORECOMMON_EXPORT bool Settings::Get<bool>() const;

#define STORAGE_DEFINE_SET(T)                                                                                          \
  void Settings::Set(const QString& name, T value)                                                                     \
  {                                                                                                                    \
    if (IsCollection(name))                                                                                            \
      return;                                                                                                          \
    SetChild(name, TypeName<std::remove_cvref_t<T>>(), ToText<std::remove_cvref_t<T>>(value), false, 0);               \
  }

#define STORAGE_DEFINE_APPEND(T)                                                                                       \
  void Settings::AppendCollectionItem(const QString& name, T value)                                                    \
  {                                                                                                                    \
    SetChild(name, TypeName<std::remove_cvref_t<T>>(), ToText<std::remove_cvref_t<T>>(value), true,                    \
             GetNextCollectionIndex(name));                                                                            \
  }

#define STORAGE_DEFINE_SET_AND_APPEND(T)                                                                               \
  STORAGE_DEFINE_SET(T)                                                                                                \
  STORAGE_DEFINE_APPEND(T)

STORAGE_DEFINE_SET_AND_APPEND(const QString&)
STORAGE_DEFINE_SET_AND_APPEND(signed char)
STORAGE_DEFINE_SET(char)
STORAGE_DEFINE_SET_AND_APPEND(unsigned char)
STORAGE_DEFINE_SET_AND_APPEND(short)
STORAGE_DEFINE_SET_AND_APPEND(unsigned short)
STORAGE_DEFINE_SET_AND_APPEND(int)
STORAGE_DEFINE_SET_AND_APPEND(unsigned int)
STORAGE_DEFINE_SET_AND_APPEND(long long)
STORAGE_DEFINE_SET_AND_APPEND(unsigned long long)
STORAGE_DEFINE_SET_AND_APPEND(float)
STORAGE_DEFINE_SET_AND_APPEND(double)
STORAGE_DEFINE_SET_AND_APPEND(bool)

#undef STORAGE_DEFINE_SET_AND_APPEND
#undef STORAGE_DEFINE_APPEND
#undef STORAGE_DEFINE_SET

unsigned long long Settings::GetNextCollectionIndex(const QString& name) const
{
  return IsCollection(name) ? Count(name) : 0;
}

std::shared_ptr<Settings> Settings::AppendCollectionNode(const QString& name)
{
  if (FindChild(name, false, 0))
    return {};
  return CreateChild(name, true, GetNextCollectionIndex(name));
}

std::shared_ptr<Settings> Settings::CreateNode(const QString& name)
{
  if (FindChild(name, false, 0))
    Remove(name);
  return CreateChild(name, false, 0);
}

std::shared_ptr<Settings> Settings::GetCheckedChild(const QString& name, bool isCollectionItem,
                                                    unsigned long long index) const
{
  try
  {
    return GetChild(name, isCollectionItem, index);
  }
  catch (const NotExistingSetting&)
  {
    if (!IsValidSettingsName(name))
      RTE::Raise(InvalidSettingsName(name));
    throw;
  }
}

std::shared_ptr<Settings> Settings::GetNode(const QString& name) const
{
  return GetCheckedChild(name, false, 0);
}

std::shared_ptr<const Settings> Settings::GetCollectionNode(const QString& name, unsigned long long index) const
{
  return GetCheckedChild(name, true, index);
}

std::shared_ptr<Settings> Settings::findCollectionNode(const QString& name, const QString& className)
{
  if (!IsCollection(name))
    return {};
  const unsigned long long count = Count(name);
  for (unsigned long long index = 0; index < count; ++index)
  {
    std::shared_ptr<Settings> item = FindChild(name, true, index);
    if (item && item->IsClass(className))
      return item;
  }
  return {};
}

QString Settings::GetClass(const QString& name) const
{
  const std::shared_ptr<Settings> child = FindChild(name, false, 0);
  return child ? child->GetClass() : QString();
}

QString Settings::GetClass(const QString& name, unsigned long long index) const
{
  if (!IsCollection(name) || index >= Count(name))
    return {};
  const std::shared_ptr<Settings> item = FindChild(name, true, index);
  return item ? item->GetClass() : QString();
}

} // namespace Storage
