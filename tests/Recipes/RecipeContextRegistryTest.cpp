#include "RecipesTestHelpers.h"

using RTE::RecipeContextRegistry;

namespace
{

// Counts its destructions, to see what the registry owns and frees.
class CountedContext : public TestContext
{
public:
  CountedContext(const QString& name, int* destroyed) : TestContext(name, 0), m_destroyed(destroyed) {}
  ~CountedContext() override { ++*m_destroyed; }

private:
  int* m_destroyed;
};

} // namespace

TEST(RecipeContextRegistryTest, ContextNames)
{
  EXPECT_TRUE(RecipeContextRegistry::isValidContextName(QStringLiteral("Camera 1.settings")));
  EXPECT_TRUE(RecipeContextRegistry::isValidContextName(QStringLiteral(".hidden")));
  EXPECT_FALSE(RecipeContextRegistry::isValidContextName(QString()));
  for (const char* bad : {"a/b", "a\\b", "c:", "x*", "why?", "say\"", "<in", "out>", "pi|pe"})
    EXPECT_FALSE(RecipeContextRegistry::isValidContextName(QString::fromLatin1(bad))) << bad;
}

TEST(RecipeContextRegistryTest, AddLookUpRemoveAndOwnership)
{
  RecipeContextRegistry registry;
  int destroyed = 0;
  EXPECT_EQ(registry.add(std::make_unique<CountedContext>(QStringLiteral("Camera"), &destroyed)), 0);
  registry.add(std::make_unique<CountedContext>(QStringLiteral("Laser"), &destroyed));
  registry.add(std::make_unique<CountedContext>(QStringLiteral("Bench"), &destroyed));
  EXPECT_EQ(registry.entries(), (QStringList{"Camera", "Laser", "Bench"}));

  EXPECT_TRUE(registry.contains(QStringLiteral("LASER")));
  ASSERT_NE(registry.get(QStringLiteral("laser")), nullptr);
  EXPECT_EQ(registry.get(QStringLiteral("laser"))->name(), QStringLiteral("Laser"));
  EXPECT_EQ(registry.get(QStringLiteral("Lase")), nullptr);

  // Rejected contexts are destroyed; the registry stays as it was.
  EXPECT_EQ(thrownMessage([&] { registry.add(nullptr); }), "Bad RecipeContextRegistry::add(): Null context");
  EXPECT_EQ(thrownMessage([&] { registry.add(std::make_unique<CountedContext>(QStringLiteral("a:b"), &destroyed)); }),
            "Bad RecipeContextRegistry::add(): Invalid context name");
  EXPECT_EQ(thrownMessage([&] { registry.add(std::make_unique<CountedContext>(QStringLiteral(""), &destroyed)); }),
            "Bad RecipeContextRegistry::add(): Invalid context name");
  EXPECT_EQ(
      thrownMessage([&] { registry.add(std::make_unique<CountedContext>(QStringLiteral("cAMERA"), &destroyed)); }),
      "Bad RecipeContextRegistry::add(): Context does already exist");
  EXPECT_EQ(destroyed, 3);
  EXPECT_EQ(registry.entries().size(), 3);

  registry.remove(QStringLiteral("unknown"));
  EXPECT_EQ(destroyed, 3);
  registry.remove(QStringLiteral("LASER"));
  EXPECT_EQ(destroyed, 4);
  EXPECT_EQ(registry.entries(), (QStringList{"Camera", "Bench"}));
  registry.clear();
  EXPECT_EQ(destroyed, 6);
  EXPECT_TRUE(registry.entries().isEmpty());

  EXPECT_EQ(&RTE::recipeContextRegistry(), &RTE::recipeContextRegistry()) << "the process registry is one object";
}
