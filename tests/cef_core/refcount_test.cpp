#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "include/base/cef_ref_counted.h"
#include "include/cef_base.h"

namespace {

class Counted : public CefBaseRefCounted {
 public:
  explicit Counted(int* deletions) : deletions_(deletions) {}
  ~Counted() override { ++*deletions_; }

 private:
  int* deletions_;
  IMPLEMENT_REFCOUNTING(Counted);
};

class Derived : public Counted {
 public:
  using Counted::Counted;
};

class Chromium : public base::RefCountedThreadSafe<Chromium> {
 public:
  explicit Chromium(int* deletions) : deletions_(deletions) {}

 private:
  friend class base::RefCountedThreadSafe<Chromium>;
  ~Chromium() { ++*deletions_; }
  int* deletions_;
};

TEST(RefCountTest, DeletesExactlyOnceWhenLastReferenceGoes) {
  int deletions = 0;
  {
    CefRefPtr<Counted> a(new Counted(&deletions));
    EXPECT_TRUE(a->HasOneRef());
    CefRefPtr<Counted> b = a;
    EXPECT_FALSE(a->HasOneRef());
    EXPECT_TRUE(a->HasAtLeastOneRef());
    a = nullptr;
    EXPECT_EQ(deletions, 0);
    EXPECT_TRUE(b->HasOneRef());
  }
  EXPECT_EQ(deletions, 1);
}

TEST(RefCountTest, PointerOperations) {
  int deletions = 0;
  CefRefPtr<Derived> derived(new Derived(&deletions));
  CefRefPtr<Counted> base = derived;  // converting copy
  EXPECT_TRUE(base == derived);
  EXPECT_TRUE(base == derived.get());
  EXPECT_FALSE(base != derived.get());
  EXPECT_TRUE(base != nullptr);
  EXPECT_TRUE(static_cast<bool>(base));

  CefRefPtr<Counted> moved = std::move(base);
  EXPECT_FALSE(base);
  EXPECT_TRUE(base == nullptr);
  EXPECT_EQ(moved.get(), derived.get());

  CefRefPtr<Counted> other;
  other.swap(moved);
  EXPECT_FALSE(moved);
  other.reset();
  derived = nullptr;
  EXPECT_EQ(deletions, 1);

  // A raw pointer released from a CefRefPtr keeps its reference.
  CefRefPtr<Counted> owner(new Counted(&deletions));
  Counted* raw = owner.release();
  EXPECT_EQ(deletions, 1);
  EXPECT_TRUE(raw->Release());
  EXPECT_EQ(deletions, 2);
}

TEST(RefCountTest, ThreadSafeCountSurvivesConcurrentCopies) {
  int deletions = 0;
  {
    scoped_refptr<Chromium> shared = base::MakeRefCounted<Chromium>(&deletions);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
      threads.emplace_back([shared] {
        for (int i = 0; i < 10000; ++i) {
          scoped_refptr<Chromium> copy = shared;
        }
      });
    }
    for (auto& thread : threads) {
      thread.join();
    }
    EXPECT_TRUE(shared->HasOneRef());
  }
  EXPECT_EQ(deletions, 1);
}

}  // namespace
