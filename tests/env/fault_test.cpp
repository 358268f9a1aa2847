// Allocation failures at every step of the main scenarios: no crash, only the codes 0 and -10,
// and handles that can still be used and closed.
#include <tivlib/env.h>

#include <string>

#include "env_test_util.h"

#ifdef TIVLIB_FAULT_INJECTION
#include "fault_sweep.h"
#include "frame/fault.h"

namespace tiv::test {
namespace {

constexpr const char* kText = "[s]\na =1\nb ={\n  c =2\n  d ={\n  }\n}\n[t]\nx =long text here\n";

class EnvFaults : public InTempDir {};

// Runs scenario with the nth allocation failing, for n = 1, 2, ... until a run passes
// without reaching the failure.
template <class Scenario>
void sweep(Scenario scenario) {
  for (long n = 1; n < 10000; ++n)
    if (!fails_at(n, [&] { scenario(n); })) return;
  FAIL() << "the scenario never completed";
}

TEST_F(EnvFaults, Open) {
  sweep([](long) {
    env_handle* env = env_open(1, nullptr);
    if (env != nullptr) {
      env_put(env, "s", "a", "1");
      EXPECT_EQ(env_close(env, 0), ENV_OK);
    }
  });
}

TEST_F(EnvFaults, Read) {
  sweep([](long n) {
    tiv::fault::fail_allocation_at(0);
    Root env;
    ASSERT_NE(env.get(), nullptr);
    tiv::fault::fail_allocation_at(n);
    const int32_t r = read_string(env, kText);
    const bool hit = tiv::fault::allocation_failure_hit();
    tiv::fault::fail_allocation_at(0);
    if (!hit) {
      EXPECT_EQ(r, ENV_OK);
      EXPECT_EQ(write_string(env), "[s]\n  a =1\n  b ={\n    c =2\n    d ={\n    }\n  }\n[t]\n  x =long text here\n");
    } else {
      EXPECT_TRUE(r == ENV_OK || r == ENV_ERROR) << "allocation " << n << " gave " << r;
    }
    EXPECT_EQ(env_put(env, "z", "k", "v"), ENV_OK);
    EXPECT_EQ(get_text(env, "z", "k"), "v");
  });
}

TEST_F(EnvFaults, Change) {
  sweep([](long n) {
    tiv::fault::fail_allocation_at(0);
    Root env;
    ASSERT_EQ(read_string(env, kText), ENV_OK);
    tiv::fault::fail_allocation_at(n);
    const int32_t r1 = env_put(env, "s", "b@d@e@3", "deep");
    const int32_t r2 = env_put(env, "s", "a", "replaced");
    const int32_t r3 = env_put_external(env, "new", "w", 5);
    const int32_t r4 = env_insert_before(env, "s", "b", "ins");
    for (int32_t r : {r1, r2, r3, r4}) EXPECT_TRUE(r == ENV_OK || r == ENV_ERROR) << r;
    const bool hit = tiv::fault::allocation_failure_hit();
    tiv::fault::fail_allocation_at(0);
    // The replaced value is either the new one or the old one, never lost.
    const std::string a = get_text(env, "s", "a");
    EXPECT_TRUE(a == "replaced" || (hit && a == "1")) << a;
    EXPECT_EQ(get_text(env, "s", "b@c"), "2");
    write_string(env);
  });
}

TEST_F(EnvFaults, SubEnvironmentsAndCopies) {
  sweep([](long n) {
    tiv::fault::fail_allocation_at(0);
    Root source;
    Root target;
    ASSERT_EQ(read_string(source, kText), ENV_OK);
    tiv::fault::fail_allocation_at(n);
    env_handle* sub = env_create_subenv(target, "s", "b");
    const int32_t r = env_copy_block(target, source, "s", "b", ENV_SINK_REPLACE);
    EXPECT_TRUE(r == ENV_OK || r == ENV_ERROR) << r;
    tiv::fault::fail_allocation_at(0);
    if (sub != nullptr) {
      EXPECT_EQ(env_close(sub, 0), ENV_OK);
    }
  });
}

TEST_F(EnvFaults, Files) {
  write_file("in.env", kText);
  sweep([](long n) {
    tiv::fault::fail_allocation_at(0);
    Root env;
    tiv::fault::fail_allocation_at(n);
    const int32_t r = env_read_file("in.env", env);
    EXPECT_TRUE(r == ENV_OK || r == ENV_ERROR) << r;
    const bool hit = tiv::fault::allocation_failure_hit();
    tiv::fault::fail_allocation_at(0);
    if (r == ENV_OK && hit) return;
    ASSERT_EQ(env_read_file("in.env", env), ENV_OK);
    tiv::fault::fail_allocation_at(1);  // the 30000-byte buffer: a smaller one serves
    env_write_file("out.env", env);
    tiv::fault::fail_allocation_at(0);
    EXPECT_EQ(read_file("out.env"), write_string(env));
  });
}

}  // namespace
}  // namespace tiv::test

#endif  // TIVLIB_FAULT_INJECTION
