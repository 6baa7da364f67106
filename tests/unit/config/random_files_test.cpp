#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "config/morvex_config.h"
#include "qxpaf/registry.h"
#include "support/config_sandbox.h"
#include "support/guarded_buffer.h"
#include "support/random_seed.h"
#include "unit/config/plain_config.h"

namespace {

using std::string;
using test_support::ConfigSandbox;
using test_support::GuardedBuffer;

constexpr int kFiles = 10'000;

class RandomConfig
{
 public:
  explicit RandomConfig(unsigned int seed) : random_(seed) {}

  std::size_t Below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }

  string OneOf(const std::vector<string>& choices) { return choices[Below(choices.size())]; }

  string Key() { return OneOf({"", "a", "A", "a\\b", "a/B", "ab", "a\\", "/", "b/a/", "a//b"}); }

  string Name() { return OneOf({"", "a", "b", "AB", "ab", "a ", "b\\a", "\xC3\xA9", "a=b", "a/b"}); }

  string File()
  {
    string content;
    for (std::size_t lines = Below(12); lines > 0; --lines) content += FileLine();
    return content;
  }

 private:
  string FileLine()
  {
    if (Below(4) == 0) return Noise() + LineEnd();
    return OneOf({"", "", "", " ", "\t", "\r", " \v\f"}) +
           OneOf({"", "a/", "A/", "a/b/", "A/B/", "ab/", "/", "b/a/", "a\\"}) +
           OneOf({"", "a", "A", "b", "ab", "a ", "b\\a", "\xC3\xA9"}) + OneOf({"=", "=", "=", "=", " =", "/", ""}) +
           Filling() + LineEnd();
  }

  /** A value, now and then one that ends near the longest piece of one reader or the other. */
  string Filling()
  {
    if (Below(6) != 0) return OneOf({"", "1", "x=y", "c/d=e", " z ", "\xFF", "\r"});
    const std::size_t length = (Below(2) == 0 ? 240 : 1008) + Below(20);
    return string(length, 'v') + OneOf({"", " ", "a/b=2", " A/a=3", "\r"});
  }

  string Noise()
  {
    static const string kAlphabet("aAbB/=\\ \t\r\n\0\xC3\xA9", 14);
    string noise;
    for (std::size_t length = Below(30); length > 0; --length) noise += kAlphabet[Below(kAlphabet.size())];
    return noise;
  }

  string LineEnd() { return OneOf({"\n", "\n", "\n", "\r\n", "\r\n", "\r\r\n", "\n\n", ""}); }

  std::mt19937 random_;
};

void CheckReader(const string& content, const string& key, const string& name)
{
  qxpaf::MorvexConfig config;
  ASSERT_TRUE(config.OpenKey(key, 0));
  string value;
  const bool found = config.ReadValue(name, value);
  if (name.find_first_of("/=") != string::npos) {
    EXPECT_FALSE(found);
    EXPECT_EQ(config.LastError(), kRegistryBadName);
  } else {
    const std::optional<string> expected = plain::Value(content, key, name);
    EXPECT_EQ(found, expected.has_value());
    EXPECT_EQ(value, expected.value_or(""));
    EXPECT_EQ(config.LastError(), found ? 0 : kRegistryNotFound);
  }
  std::vector<string> names;
  std::vector<string> values;
  EXPECT_TRUE(config.EnumerateValues(names, values));
  ASSERT_EQ(names.size(), values.size());
  plain::Pairs pairs;
  for (std::size_t i = 0; i < names.size(); ++i) pairs.emplace_back(names[i], values[i]);
  EXPECT_EQ(pairs, plain::Values(content, key));
  EXPECT_EQ(config.EnumerateKeys(), plain::Keys(content, key));
}

void CheckLookUp(const string& content, const string& key, const string& name, std::size_t size)
{
  GuardedBuffer buffer(size);
  int length = static_cast<int>(size);
  const int code = LookUpRegistry_(key.c_str(), name.c_str(), buffer.Data(), length, false);
  const std::optional<string> expected = plain::RegistryValue(content, key, name);
  EXPECT_TRUE(buffer.Intact());
  EXPECT_EQ(code, expected ? 0 : kRegistryNotFound);
  if (!expected) return;
  EXPECT_EQ(length, static_cast<int>(expected->size()));
  string bytes = expected->substr(0, size - 1);
  bytes.resize(size, '\0');
  EXPECT_EQ(buffer.Bytes(), bytes);
}

void CheckEnumeration(const string& content, const string& key)
{
  char** names = nullptr;
  char** values = nullptr;
  EnumerateRegistry_(key.c_str(), &names, &values);
  ASSERT_NE(names, nullptr);
  ASSERT_NE(values, nullptr);
  plain::Pairs pairs;
  for (std::size_t i = 0; names[i] != nullptr && values[i] != nullptr; ++i) {
    pairs.emplace_back(names[i], values[i]);
    delete[] names[i];
    delete[] values[i];
  }
  EXPECT_EQ(names[pairs.size()], nullptr);
  EXPECT_EQ(values[pairs.size()], nullptr);
  delete[] names;
  delete[] values;
  EXPECT_EQ(pairs, plain::RegistryValues(content, key));
}

TEST(RandomConfigFiles, AreReadAsThePlainWayReadsThem)
{
  const ConfigSandbox sandbox;
  RandomConfig random(test_support::RandomSeed());
  for (int i = 0; i < kFiles && !testing::Test::HasFailure(); ++i) {
    const string content = random.File();
    sandbox.Configure(content);
    for (int query = 0; query < 4; ++query) {
      const string key = random.Key();
      const string name = random.Name();
      SCOPED_TRACE("file " + std::to_string(i) + " key '" + key + "' name '" + name + "' content\n" + content);
      CheckReader(content, key, name);
      CheckLookUp(content, key, name, 1 + random.Below(300));
      CheckEnumeration(content, key);
    }
  }
}

}  // namespace
