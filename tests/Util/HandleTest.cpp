// Shared ownership: who keeps an object alive, and until when.
#include <LS/Util/Handle>

#include <gtest/gtest.h>

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
    Handle<Node> handle(new Node(nDeaths));
    {
        const Handle<Node> other = handle;
        const auto& self = handle;
        handle = self;
        handle = other;
        handle = other.get();
        EXPECT_EQ(2, Count(*handle.get()));
    }
    EXPECT_EQ(1, Count(*handle.get()));
    EXPECT_EQ(0, nDeaths);
    handle = nullptr;
    EXPECT_EQ(1, nDeaths);
    EXPECT_FALSE(handle);

    handle = new Node(nDeaths);
    EXPECT_TRUE(handle);
    handle->child = new Node(nDeaths);
    handle = handle->child; // only the parent kept the child alive
    EXPECT_EQ(2, nDeaths);
    EXPECT_EQ(1, Count(*handle.get()));
}

TEST(Handle, CastsAtRunTime)
{
    int nDeaths = 0;
    const Handle<Node> leaf(new Leaf(nDeaths)), node(new Node(nDeaths));
    const Handle<Leaf> toLeaf = leaf;
    EXPECT_EQ(leaf.get(), toLeaf.get());
    EXPECT_EQ(2, Count(*leaf.get()));
    const Handle<Leaf> toWrongType = node;
    EXPECT_FALSE(toWrongType);
    EXPECT_EQ(1, Count(*node.get()));
}
