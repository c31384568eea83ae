// Shared ownership: who keeps an object alive, and until when.
#include <LS/Util/Handle>

#include "tests/support/FailureRecorder.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using LS::Util::Handle;
using LS::Util::Object;

namespace {

/// Counts how often it dies, and can hold a child.
struct Node : virtual Object {
    explicit Node(int& nDeaths) : deaths(nDeaths) {}
    ~Node() override { ++deaths; }

    int& deaths;
    Handle<Node> child;
};

struct Leaf : Node {
    using Node::Node;
};

/// The count without changing it.
int Count(Object& object)
{
    object.ref();
    return object.unref();
}

} // namespace

TEST(Handle, LastHolderDeletesOnce)
{
    int nDeaths = 0;
    auto* pNode = new Node(nDeaths);
    {
        const Handle<Node> first(pNode);
        EXPECT_EQ(1, Count(*pNode));
        {
            const Handle<Node> second = first; // NOLINT(performance-unnecessary-copy-initialization)
            EXPECT_EQ(2, Count(*pNode));
        }
        EXPECT_EQ(1, Count(*pNode));
        EXPECT_EQ(0, nDeaths);
    }
    EXPECT_EQ(1, nDeaths);
}

TEST(Handle, IsAsLargeAsAPointer)
{
    EXPECT_EQ(sizeof(void*), sizeof(Handle<Node>));
}

TEST(Handle, AssignmentToTheSameObjectChangesNothing)
{
    int nDeaths = 0;
    Handle<Node> handle(new Node(nDeaths));
    const Handle<Node> other = handle;
    const auto& self = handle;
    handle = self;
    handle = other;
    handle = other.get();
    EXPECT_EQ(2, Count(*handle.get()));
    EXPECT_EQ(0, nDeaths);
}

TEST(Handle, NullIsHarmless)
{
    const Handle<Node> null;
    Handle<Node> copy = null;
    copy = null;
    copy = nullptr;
    EXPECT_FALSE(copy);

    int nDeaths = 0;
    copy = new Node(nDeaths);
    EXPECT_TRUE(copy);
    copy = nullptr;
    EXPECT_EQ(1, nDeaths);
}

TEST(Handle, TakesTheNewBeforeItDropsTheOld)
{
    int nDeaths = 0;
    Handle<Node> handle(new Node(nDeaths));
    handle->child = new Node(nDeaths);
    handle = handle->child; // only the parent kept the child alive
    EXPECT_EQ(1, nDeaths);
    EXPECT_EQ(1, Count(*handle.get()));
}

TEST(Handle, CastsAtRunTime)
{
    int nDeaths = 0;
    const Handle<Node> leaf(new Leaf(nDeaths));
    const Handle<Node> node(new Node(nDeaths));

    const Handle<Leaf> toLeaf = leaf;
    EXPECT_TRUE(toLeaf);
    EXPECT_EQ(2, Count(*leaf.get()));
    Handle<Leaf> toWrongType = node;
    EXPECT_FALSE(toWrongType);
    EXPECT_EQ(1, Count(*node.get()));
    toWrongType = leaf;
    EXPECT_EQ(leaf.get(), toWrongType.get());
}

TEST(Handle, ContainersCountTheirElements)
{
    int nDeaths = 0;
    const Handle<Node> handle(new Node(nDeaths));
    std::vector<Handle<Node>> vHandles(5, handle);
    EXPECT_EQ(6, Count(*handle.get()));
    vHandles.resize(2);
    EXPECT_EQ(3, Count(*handle.get()));
}

TEST(Object, SameMeansIdentity)
{
    int nDeaths = 0;
    const Handle<Node> one(new Node(nDeaths)), other(new Node(nDeaths));
    EXPECT_EQ(1, one->isSame(one.get()));
    EXPECT_EQ(0, one->isSame(other.get()));
}

TEST(HandleDeathTest, BrokenRulesAreNamed)
{
    const Handle<Node> null;
    EXPECT_DEATH(null->isSame(nullptr), "this->handle_ptr_");
    EXPECT_DEATH(
        {
            int nDeaths = 0;
            Node(nDeaths).unref();
        },
        "this->__ref_count_ > 0");
}
