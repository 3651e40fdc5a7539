#include "TestHelpers.h"

#include <Core/Common/Parameter/C_ParameterServer.h>
#include <Core/Common/Parameter/DefinitionAutoRegistration.h>
#include <Core/Common/Parameter/DefinitionRegistry.h>
#include <Core/Common/Parameter/Detail/C_ParameterServerImpl.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace RTE::Parameter;

namespace
{

std::shared_ptr<C_Tree> makeCamera()
{
  auto tree = CreateTree();
  tree->AddChild(CreateDouble("ExposureTime", 10.0));
  return tree;
}

// Registered during static initialisation, before main.
const DefinitionAutoRegistration autoRegistered("ServerTest.Static", &makeCamera);

// Registers definitions for one test and leaves the server and registry as they were.
class ParameterServerTest : public ::testing::Test
{
protected:
  void TearDown() override
  {
    Detail::C_ParameterServerImpl::GetInstance().Clear();
    for (const QString& name : m_registered)
      DefinitionRegistry::Instance().Deregister(name);
  }

  void define(const QString& name, DefinitionRegistry::Factory factory)
  {
    DefinitionRegistry::Instance().Register(name, std::move(factory));
    m_registered.append(name);
  }

  // A definition that counts the trees it makes.
  void defineCounted(const QString& name)
  {
    define(name,
           [this]
           {
             ++made;
             return makeCamera();
           });
  }

  std::atomic<int> made{0};
  C_ParameterServer& server = C_ParameterServer::GetInstance();

private:
  QList<QString> m_registered;
};

} // namespace

TEST_F(ParameterServerTest, OneTreePerKeyMadeOnFirstRequest)
{
  defineCounted("Camera");
  EXPECT_FALSE(server.Contains("Camera", 0));
  const auto first = server.Get("Camera", 0);
  const auto again = server.Get("Camera", 0);
  EXPECT_EQ(first, again);
  EXPECT_EQ(made, 1);
  const auto other = server.Get("Camera", 1);
  EXPECT_NE(other, first);
  EXPECT_EQ(made, 2);
  EXPECT_TRUE(*other == *first); // made by the same definition

  EXPECT_TRUE(server.Contains("Camera", 1));
  EXPECT_TRUE(server.Contains(first));
  EXPECT_EQ(server.GetKey(other), 1);
  EXPECT_EQ(server.GetDefinitionName(other), "Camera");
  // A C_Tree copy shares the tree but is another object: not what the server holds.
  EXPECT_FALSE(server.Contains(std::make_shared<C_Tree>(*first)));
}

TEST_F(ParameterServerTest, ListsInInstanceOrderAndRemoveOnlyEndsTheServersHold)
{
  defineCounted("Camera");
  defineCounted("Laser");
  const auto two = server.Get("Camera", 2);
  const auto minus = server.Get("Camera", -1);
  const auto zero = server.Get("Camera", 0);
  server.Get("Laser", 1);
  EXPECT_EQ(server.GetList("Camera"), (std::vector<std::shared_ptr<C_Tree>>{minus, zero, two}));
  EXPECT_EQ(server.GetList("Laser").size(), 1u);
  EXPECT_TRUE(server.GetList("Cam").empty());

  two->GetDouble("ExposureTime")->SetValue(20.0);
  server.Remove("Camera", 2);
  server.Remove("Camera", 7); // absent: ignored
  EXPECT_FALSE(server.Contains("Camera", 2));
  EXPECT_FALSE(server.Contains(two));
  EXPECT_EQ(two->GetDouble("ExposureTime")->GetValue(), 20.0); // the holder keeps it
  const auto remade = server.Get("Camera", 2);
  EXPECT_NE(remade, two);
  EXPECT_EQ(remade->GetDouble("ExposureTime")->GetValue(), 10.0);
}

TEST_F(ParameterServerTest, FailuresStoreNothing)
{
  EXPECT_EQ(messageOf([&] { server.Get("Unknown", 0); }),
            "RTE::Exception: No definition for Unknown found in parameter definition registry.");
  EXPECT_FALSE(server.Contains("Unknown", 0));
  EXPECT_TRUE(server.GetList("Unknown").empty());

  // A definition whose factory fails: the failure reaches the caller, no tree is kept.
  int attempts = 0;
  define("Failing",
         [&attempts]() -> std::shared_ptr<C_Tree>
         {
           if (++attempts == 1)
             throw RTE::Exception("device offline");
           return makeCamera();
         });
  EXPECT_EQ(messageOf([&] { server.Get("Failing", 0); }), "RTE::Exception: device offline");
  EXPECT_FALSE(server.Contains("Failing", 0));
  EXPECT_TRUE(server.GetList("Failing").empty());
  EXPECT_TRUE(server.Get("Failing", 0)); // the next request tries again
  EXPECT_EQ(attempts, 2);

  const auto stranger = CreateTree();
  EXPECT_EQ(messageOf([&] { server.GetKey(stranger); }), "RTE::Exception: Given tree not found");
  EXPECT_EQ(messageOf([&] { server.GetDefinitionName(stranger); }), "RTE::Exception: Given tree not found");
  EXPECT_EQ(messageOf([&] { server.GetKey(nullptr); }), "RTE::Exception: Given tree not found");
}

TEST_F(ParameterServerTest, ConcurrentFirstRequestsGetOneTree)
{
  defineCounted("Camera");
  std::vector<std::shared_ptr<C_Tree>> seen(8);
  std::vector<std::thread> threads;
  for (size_t i = 0; i < seen.size(); ++i)
    threads.emplace_back([&, i] { seen[i] = server.Get("Camera", 3); });
  for (auto& thread : threads)
    thread.join();
  EXPECT_EQ(made, 1);
  for (const auto& tree : seen)
    EXPECT_EQ(tree, seen.front());
}

TEST_F(ParameterServerTest, RegistryMakesANewTreePerCreateAndReplacesByName)
{
  auto& registry = DefinitionRegistry::Instance();
  EXPECT_TRUE(registry.Contains("ServerTest.Static"));
  EXPECT_TRUE(server.Get("ServerTest.Static", 0)->Contains("ExposureTime"));

  defineCounted("Camera");
  const auto a = registry.Create("Camera");
  const auto b = registry.Create("Camera");
  EXPECT_NE(a, b);
  EXPECT_EQ(made, 2);

  define("Camera",
         []
         {
           auto tree = CreateTree();
           tree->AddChild(CreateBool("Replaced", true));
           return tree;
         });
  EXPECT_TRUE(registry.Create("Camera")->Contains("Replaced"));
  EXPECT_EQ(made, 2);

  // A definition built from another one: its factory uses the registry itself.
  define("Rig",
         [&registry]
         {
           auto tree = CreateTree();
           auto camera = CreateCategory("Camera", "", "");
           camera->SetChildList(registry.Create("Camera")->GetChildList());
           tree->AddChild(camera);
           return tree;
         });
  EXPECT_TRUE(registry.Create("Rig")->Contains("Camera.Replaced"));

  registry.Deregister("Camera");
  registry.Deregister("Camera"); // absent: ignored
  EXPECT_FALSE(registry.Contains("Camera"));
  EXPECT_EQ(messageOf([&] { registry.Create("Camera"); }),
            "RTE::Exception: No definition for Camera found in parameter definition registry.");
}
