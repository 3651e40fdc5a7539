#include <Core/Common/Plugins/C_PluginFactory.h>
#include <Core/Common/Plugins/C_PluginRegistry.h>
#include <Core/Common/Plugins/I_CreationContext.h>
#include <Core/Common/Plugins/LibraryManager.h>

#include "TestPlugins/TestShape.h"

#include <gtest/gtest.h>

using Strings = std::vector<std::string>;

namespace
{

// What the creators saw.
int g_calls = 0;
RTE::I_CreationContext* g_context = nullptr;

template <int Tag>
std::unique_ptr<RTE::I_Plugin> makeTagged(RTE::I_CreationContext* context)
{
  ++g_calls;
  g_context = context;
  return std::make_unique<TestShape>("Tagged", std::to_string(Tag), "made by creator " + std::to_string(Tag));
}

struct Context : RTE::I_CreationContext
{
  Context(std::string domain, std::string name) : domain(std::move(domain)), name(std::move(name)) {}
  std::string GetDomain() const override { return domain; }
  std::string GetName() const override { return name; }
  std::string domain;
  std::string name;
};

// The test program's own plug-in, registered during static initialisation like a
// statically linked class; the more-shapes test library tries to take its name.
const bool pointRegistered = RTE::C_PluginRegistry::GetInstance().RegisterPlugin(
    "Test.Shapes", "Point", "the test program's point",
    [](RTE::I_CreationContext*) -> std::unique_ptr<RTE::I_Plugin>
    { return std::make_unique<TestShape>("Test.Shapes", "Point", "the test program's point"); });

class PluginFactoryTest : public ::testing::Test
{
protected:
  void SetUp() override
  {
    g_calls = 0;
    g_context = nullptr;
  }
  RTE::C_PluginFactory factory;
};

} // namespace

TEST_F(PluginFactoryTest, ListsFollowRegistrationOrder)
{
  EXPECT_TRUE(factory.RegisterPlugin("Codec", "Zlib", "deflate", &makeTagged<1>));
  EXPECT_TRUE(factory.RegisterPlugin("Camera", "Fast", "high speed", &makeTagged<2>));
  EXPECT_TRUE(factory.RegisterPlugin("Codec", "LZ4", "fast block", &makeTagged<3>));
  // Names and domains compare exactly: another case is another plug-in.
  EXPECT_TRUE(factory.RegisterPlugin("Codec", "zlib", "lower case", &makeTagged<4>));
  EXPECT_TRUE(factory.RegisterPlugin("codec", "Zlib", "lower-case domain", &makeTagged<5>));

  EXPECT_EQ(factory.GetNumberOfPlugins(), 5u);
  EXPECT_EQ(factory.GetListOfPlugins(), (Strings{"Codec", "Camera", "Codec", "Codec", "codec"}));
  EXPECT_EQ(factory.GetListOfPluginTypes("Codec"), (Strings{"Zlib", "LZ4", "zlib"}));
  EXPECT_EQ(factory.GetListOfPluginDescriptions("Codec"), (Strings{"deflate", "fast block", "lower case"}));
  EXPECT_EQ(factory.GetListOfPluginTypes("codec"), (Strings{"Zlib"}));
  EXPECT_TRUE(factory.GetListOfPluginTypes("Nothing").empty());
  EXPECT_TRUE(factory.GetListOfPluginDescriptions("Nothing").empty());

  auto made = factory.CreatePluginObject("Codec", "zlib");
  ASSERT_TRUE(made);
  EXPECT_EQ(made->GetName(), "4");
}

TEST_F(PluginFactoryTest, DuplicateRegistrationKeepsTheFirstAndReregistrationGoesToTheEnd)
{
  EXPECT_TRUE(factory.RegisterPlugin("Codec", "Zlib", "first", &makeTagged<1>));
  EXPECT_TRUE(factory.RegisterPlugin("Codec", "LZ4", "other", &makeTagged<2>));
  EXPECT_FALSE(factory.RegisterPlugin("Codec", "Zlib", "second", &makeTagged<3>));

  EXPECT_EQ(factory.GetNumberOfPlugins(), 2u);
  EXPECT_EQ(factory.GetListOfPluginTypes("Codec"), (Strings{"Zlib", "LZ4"}));
  EXPECT_EQ(factory.GetListOfPluginDescriptions("Codec"), (Strings{"first", "other"}));
  auto made = factory.CreatePluginObjectPtr("Codec", "Zlib");
  ASSERT_TRUE(made);
  EXPECT_EQ(made->GetName(), "1");
  // A refused duplicate is no registration error: only registering code reports those.
  EXPECT_TRUE(factory.GetRegistrationErrors().empty());

  for (const char* name : {"A", "B", "C"})
    EXPECT_TRUE(factory.RegisterPlugin("D", name, std::string("about ") + name, &makeTagged<1>));

  factory.DeregisterPlugin("D", "A");
  factory.DeregisterPlugin("D", "Unknown");
  factory.DeregisterPlugin("Other", "B");
  EXPECT_EQ(factory.GetListOfPluginTypes("D"), (Strings{"B", "C"}));
  EXPECT_FALSE(factory.CreatePluginObject("D", "A"));

  EXPECT_TRUE(factory.RegisterPlugin("D", "A", "again", &makeTagged<2>));
  EXPECT_EQ(factory.GetListOfPluginTypes("D"), (Strings{"B", "C", "A"}));
  EXPECT_EQ(factory.GetListOfPluginDescriptions("D"), (Strings{"about B", "about C", "again"}));
  EXPECT_EQ(factory.CreatePluginObject("D", "A")->GetName(), "2");
}

TEST_F(PluginFactoryTest, ContextReachesOnlyTheCreatorItNames)
{
  ASSERT_TRUE(factory.RegisterPlugin("Codec", "Zlib", "deflate", &makeTagged<1>));
  ASSERT_TRUE(factory.RegisterPlugin("Codec", "LZ4", "block", &makeTagged<2>));

  struct Case
  {
    const char* what;
    std::string domain, name; // requested
    Context context;          // handed over
    int calls;                // creator calls expected
    const char* made;         // name of the plug-in made, or null
  };
  const Case cases[] = {
      {"matching context", "Codec", "Zlib", {"Codec", "Zlib"}, 1, "1"},
      {"context for another name", "Codec", "Zlib", {"Codec", "LZ4"}, 0, nullptr},
      {"context for another domain", "Codec", "Zlib", {"Camera", "Zlib"}, 0, nullptr},
      {"context names differ in case", "Codec", "Zlib", {"Codec", "zlib"}, 0, nullptr},
      {"unknown plug-in, matching context", "Codec", "Brotli", {"Codec", "Brotli"}, 0, nullptr},
  };
  for (Case c : cases)
  {
    SCOPED_TRACE(c.what);
    g_calls = 0;
    g_context = nullptr;
    const auto made = factory.CreatePluginObject(c.domain, c.name, c.context);
    EXPECT_EQ(g_calls, c.calls);
    if (c.made)
    {
      ASSERT_TRUE(made);
      EXPECT_EQ(made->GetName(), c.made);
      EXPECT_EQ(g_context, &c.context);
    }
    else
    {
      EXPECT_FALSE(made);
    }
  }
}

TEST_F(PluginFactoryTest, CreationWithoutContextPassesNull)
{
  ASSERT_TRUE(factory.RegisterPlugin("Codec", "Zlib", "deflate", &makeTagged<7>));
  Context stale("Codec", "Zlib");
  g_context = &stale;

  const std::shared_ptr<RTE::I_Plugin> shared = factory.CreatePluginObject("Codec", "Zlib");
  ASSERT_TRUE(shared);
  EXPECT_EQ(shared->GetDescription(), "made by creator 7");
  EXPECT_EQ(g_context, nullptr);

  g_context = &stale;
  const std::unique_ptr<RTE::I_Plugin> unique = factory.CreatePluginObjectPtr("Codec", "Zlib");
  ASSERT_TRUE(unique);
  EXPECT_EQ(g_context, nullptr);
  EXPECT_EQ(g_calls, 2);

  EXPECT_FALSE(factory.CreatePluginObject("Codec", "zlib"));
  EXPECT_FALSE(factory.CreatePluginObjectPtr("Codec", "Unknown"));
  EXPECT_EQ(g_calls, 2);
}

TEST(PluginRegistry, ForwardsToTheProcessWideFactory)
{
  auto& factory = RTE::C_PluginFactory::GetInstance();
  EXPECT_EQ(&factory, &RTE::C_PluginFactory::GetInstance());
  EXPECT_TRUE(pointRegistered);

  // Copies forward to the same factory: the registry has no state of its own.
  RTE::C_PluginRegistry registry = RTE::C_PluginRegistry::GetInstance();
  const unsigned int before = factory.GetNumberOfPlugins();
  EXPECT_TRUE(registry.RegisterPlugin("Test.Registry", "One", "first", &makeTagged<1>));
  EXPECT_FALSE(RTE::C_PluginRegistry::GetInstance().RegisterPlugin("Test.Registry", "One", "again", &makeTagged<2>));
  EXPECT_EQ(factory.GetNumberOfPlugins(), before + 1);
  EXPECT_EQ(factory.GetListOfPluginDescriptions("Test.Registry"), (Strings{"first"}));

  registry.DeregisterPlugin("Test.Registry", "One");
  EXPECT_TRUE(factory.GetListOfPluginTypes("Test.Registry").empty());

  factory.ClearRegistrationErrors();
  RTE::C_PluginRegistry moved = std::move(registry);
  moved.AddError("could not register");
  moved.AddError("second problem");
  auto errors = factory.GetRegistrationErrors();
  EXPECT_EQ(errors, (Strings{"could not register", "second problem"}));
  errors.clear(); // a copy: the factory keeps its own
  EXPECT_EQ(factory.GetRegistrationErrors().size(), 2u);
  factory.ClearRegistrationErrors();
  EXPECT_TRUE(factory.GetRegistrationErrors().empty());
}

TEST(PluginRegistry, StaticRegistrationBelongsToNoLibrary)
{
  auto& factory = RTE::C_PluginFactory::GetInstance();
  EXPECT_EQ(factory.GetListOfPluginDescriptions("Test.Shapes"), (Strings{"the test program's point"}));
  auto point = factory.CreatePluginObject("Test.Shapes", "Point");
  ASSERT_TRUE(point);
  EXPECT_EQ(point->GetDomain(), "Test.Shapes");
  // Registering outside a library load records nothing with the manager.
  EXPECT_EQ(RTE::LibraryManager::instance().getNumberOfLibraries(), 0u);
  RTE::C_PluginFactory local;
  EXPECT_TRUE(local.RegisterPlugin("Local", "One", "", &makeTagged<1>));
  EXPECT_EQ(RTE::LibraryManager::instance().getNumberOfLibraries(), 0u);
}
