#include <Core/Common/Storage/Settings.h>

#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Storage/StorageExceptions.h>

#include "Utf8Buffer_p.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <string_view>
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
const QString& TypeName()
{
  static const QString name = QString::fromLatin1(ValueType<T>::name);
  return name;
}

// A number's text in the C locale, through fmt (never the user's locale), formatted into
// a buffer on the stack: collections write one per item. The character code of a char
// is taken as unsigned; float is widened to double and written with 10 significant
// digits, double with 15.
class FormattedNumber
{
public:
  template <typename T>
  explicit FormattedNumber(T value)
  {
    if constexpr (std::is_floating_point_v<T>)
    {
      const auto result = std::is_same_v<T, float>
                              ? fmt::format_to_n(m_text, sizeof m_text, "{:.10g}", static_cast<double>(value))
                              : fmt::format_to_n(m_text, sizeof m_text, "{:.15g}", static_cast<double>(value));
      m_size = std::min(result.size, sizeof m_text);
    }
    else if constexpr (std::is_same_v<T, char>)
      SetInteger(static_cast<unsigned char>(value));
    else
      SetInteger(value);
  }

  std::string_view view() const { return std::string_view(m_text, m_size); }

private:
  // Digits written in place (a copy of freshly formatted digits stalls on the stores);
  // small types widen to int.
  template <typename T>
  void SetInteger(T value)
  {
    m_size = static_cast<size_t>(std::to_chars(m_text, m_text + sizeof m_text, +value).ptr - m_text);
  }

  // The longest text is a double such as -2.22507385850720e-308.
  char m_text[32];
  size_t m_size;
};

// Calls write with the UTF-8 text of value, as the table of value types has it.
template <typename T, typename Write>
void WithText(const T& value, Write&& write)
{
  if constexpr (std::is_same_v<T, QString>)
    write(Private::Utf8Buffer(value).view());
  else if constexpr (std::is_same_v<T, bool>)
    write(std::string_view(value ? "true" : "false"));
  else
    write(FormattedNumber(value).view());
}

bool IsAsciiSpace(char c)
{
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

// A number text without surrounding white space and without a leading '+'.
std::string_view NumberText(const char* text)
{
  // One pass finds both ends: this runs for every number read.
  while (IsAsciiSpace(*text))
    ++text;
  const char* last = text;
  for (const char* c = text; *c; ++c)
  {
    if (!IsAsciiSpace(*c))
      last = c + 1;
  }
  std::string_view view(text, static_cast<std::size_t>(last - text));
  if (view.size() > 1 && view.front() == '+' && view[1] != '-')
    view.remove_prefix(1);
  return view;
}

template <typename N>
bool ParseNumber(std::string_view text, N& value)
{
  const char* end = text.data() + text.size();
  std::from_chars_result result;
  if constexpr (std::is_floating_point_v<N>)
    result = std::from_chars(text.data(), end, value, std::chars_format::general);
  else
    result = std::from_chars(text.data(), end, value, 10);
  return !text.empty() && result.ec == std::errc() && result.ptr == end;
}

// The writer's 15 digits round the largest finite doubles up beyond the range
// ("1.79769313486232e+308"); such a text, no further out than that rounding, reads back
// as the largest finite value of its sign. Anything else that does not fit gives 0.
template <typename T>
T RoundedUpExtreme(std::string_view text)
{
  long double wide = 0;
  const char* end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, wide, std::chars_format::general);
  if (text.empty() || result.ec != std::errc() || result.ptr != end)
    return T(0);
  const long double limit = std::numeric_limits<T>::max();
  const long double slack = limit * 1e-14L;
  if (wide > limit && wide <= limit + slack)
    return std::numeric_limits<T>::max();
  if (wide < -limit && wide >= -limit - slack)
    return std::numeric_limits<T>::lowest();
  return T(0);
}

// The UTF-8 value text as T, in the C locale; a text that does not parse, or does not
// fit T, gives 0 (but see RoundedUpExtreme).
template <typename T>
T FromText(const char* text)
{
  if constexpr (std::is_same_v<T, QString>)
    return QString::fromUtf8(text);
  else if constexpr (std::is_same_v<T, bool>)
    return std::strcmp(text, "true") == 0;
  else if constexpr (std::is_same_v<T, char>)
  {
    unsigned long long value = 0;
    return ParseNumber(NumberText(text), value) ? static_cast<char>(static_cast<unsigned char>(value & 0xFFu))
                                                : char(0);
  }
  else if constexpr (std::is_floating_point_v<T>)
  {
    T value{};
    const std::string_view number = NumberText(text);
    return ParseNumber(number, value) ? value : RoundedUpExtreme<T>(number);
  }
  else
  {
    T value{};
    return ParseNumber(NumberText(text), value) ? value : T(0);
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

// Defined here so that the interface's type information lives in the library.
I_SerializableSettings::~I_SerializableSettings() = default;

template <typename T>
T Settings::Get() const
{
  if constexpr (std::is_same_v<T, QString>)
    return GetValue(TypeName<T>());
  else
    return FromText<T>(Private::Utf8Buffer(GetValue(TypeName<T>())).c_str());
}

template <typename T>
T Settings::ReadLeaf(const QString& name, bool isCollectionItem, unsigned long long index, const T& defaultValue) const
{
  if (const char* text = FindValueText(name, isCollectionItem, index, ValueType<T>::name))
    return FromText<T>(text);
  // The first child of that name is a collection item: GetNode throws for it.
  if (!isCollectionItem && Contains(name))
    (void)GetNode(name);
  return defaultValue;
}

#define STORAGE_INSTANTIATE_READS(T)                                                                                   \
  template CORECOMMON_EXPORT T Settings::Get<T>() const;                                                               \
  template CORECOMMON_EXPORT T Settings::ReadLeaf<T>(const QString&, bool, unsigned long long, const T&) const;

STORAGE_INSTANTIATE_READS(signed char)
STORAGE_INSTANTIATE_READS(char)
STORAGE_INSTANTIATE_READS(unsigned char)
STORAGE_INSTANTIATE_READS(short)
STORAGE_INSTANTIATE_READS(unsigned short)
STORAGE_INSTANTIATE_READS(int)
STORAGE_INSTANTIATE_READS(unsigned int)
STORAGE_INSTANTIATE_READS(float)
STORAGE_INSTANTIATE_READS(double)
STORAGE_INSTANTIATE_READS(QString)
STORAGE_INSTANTIATE_READS(long long)
STORAGE_INSTANTIATE_READS(unsigned long long)
STORAGE_INSTANTIATE_READS(bool)

#undef STORAGE_INSTANTIATE_READS

#define STORAGE_DEFINE_SET(T)                                                                                          \
  void Settings::Set(const QString& name, T value)                                                                     \
  {                                                                                                                    \
    WithText(value,                                                                                                    \
             [&](std::string_view text) { WriteLeaf(name, ValueType<std::remove_cvref_t<T>>::name, text, false); });   \
  }

#define STORAGE_DEFINE_APPEND(T)                                                                                       \
  void Settings::AppendCollectionItem(const QString& name, T value)                                                    \
  {                                                                                                                    \
    WithText(value,                                                                                                    \
             [&](std::string_view text) { WriteLeaf(name, ValueType<std::remove_cvref_t<T>>::name, text, true); });    \
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
      RTE::RaiseAt(InvalidSettingsName(name), QStringLiteral("Core/Common/Settings"), 141);
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
