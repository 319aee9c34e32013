// base::BindOnce / base::BindRepeating and the callbacks they make.

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "include/base/cef_callback.h"
#include "include/cef_base.h"

namespace cef_runtime_test {
namespace {

class Counter : public CefBaseRefCounted {
 public:
  explicit Counter(bool* destroyed) : destroyed_(destroyed) {}
  ~Counter() override { *destroyed_ = true; }
  int Add(int a, const std::string& b) { return total_ += a + static_cast<int>(b.size()); }
  int total() const { return total_; }

 private:
  bool* destroyed_;
  int total_ = 0;
  IMPLEMENT_REFCOUNTING(Counter);
};

int Take(std::unique_ptr<int> value, int extra) {
  return *value + extra;
}

TEST(Callbacks, MethodsOnRefCountedReceiversKeepThemAlive) {
  bool destroyed = false;
  Counter* raw = new Counter(&destroyed);
  base::OnceCallback<int(const std::string&)> by_raw = base::BindOnce(&Counter::Add, raw, 1);
  base::OnceCallback<int()> by_ref = base::BindOnce(&Counter::total, CefRefPtr<Counter>(raw));
  EXPECT_FALSE(raw->HasOneRef());  // both callbacks hold a reference

  EXPECT_EQ(std::move(by_raw).Run("abc"), 4);
  EXPECT_TRUE(by_raw.is_null());
  EXPECT_FALSE(destroyed);
  EXPECT_EQ(std::move(by_ref).Run(), 4);
  EXPECT_TRUE(destroyed);  // the last callback went with its run
}

TEST(Callbacks, BoundArgumentsAreMovedAndDestroyedWithTheCallback) {
  base::OnceCallback<int(int)> once = base::BindOnce(&Take, std::make_unique<int>(40));
  EXPECT_TRUE(once);
  EXPECT_EQ(std::move(once).Run(2), 42);

  auto shared = std::make_shared<int>(7);
  base::OnceClosure holder = base::BindOnce([](std::shared_ptr<int>) {}, shared);
  EXPECT_EQ(shared.use_count(), 2);
  holder.Reset();
  EXPECT_FALSE(holder);
  EXPECT_EQ(shared.use_count(), 1);

  base::OnceCallback<int()> owned = base::BindOnce([](int* v) { return *v; }, base::Owned(new int(5)));
  EXPECT_EQ(std::move(owned).Run(), 5);
}

TEST(Callbacks, RepeatingCopiesShareStateAndConvertToOnce) {
  int calls = 0;
  base::RepeatingCallback<int(int)> add =
      base::BindRepeating([](int* calls, int a, int b) { ++*calls; return a + b; }, &calls, 10);
  base::RepeatingCallback<int(int)> copy = add;
  EXPECT_TRUE(copy == add);
  EXPECT_EQ(add.Run(1), 11);
  EXPECT_EQ(copy.Run(2), 12);
  EXPECT_EQ(calls, 2);

  base::OnceCallback<int(int)> once = copy;
  EXPECT_EQ(std::move(once).Run(3), 13);
  EXPECT_TRUE(copy);  // converting copied, so the original still runs
  EXPECT_EQ(copy.Run(4), 14);

  // A callback can be bound again, with more arguments.
  base::OnceClosure chained = base::BindOnce(base::BindOnce([](int* c, int v) { *c = v; }, &calls), 99);
  std::move(chained).Run();
  EXPECT_EQ(calls, 99);

  struct Plain {
    void Set(int v) { value = v; }
    int value = 0;
  } plain;
  base::BindRepeating(&Plain::Set, base::Unretained(&plain), 8).Run();
  EXPECT_EQ(plain.value, 8);
}

}  // namespace
}  // namespace cef_runtime_test
