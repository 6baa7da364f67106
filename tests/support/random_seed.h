#ifndef QXPAF_TESTS_SUPPORT_RANDOM_SEED_H
#define QXPAF_TESTS_SUPPORT_RANDOM_SEED_H

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string_view>

namespace test_support {

/**
 * The seed of a test with random input, which is printed: always the same one, so that a failure comes from a change,
 * unless QXPAF_TEST_SEED gives another, or "random" for a new one every time.
 */
inline unsigned int RandomSeed()
{
  constexpr unsigned int kUsualSeed = 20'000'229;
  const char* const given = std::getenv("QXPAF_TEST_SEED");
  unsigned int seed = kUsualSeed;
  if (given != nullptr) {
    seed = std::string_view(given) == "random" ? std::random_device()()
                                               : static_cast<unsigned int>(std::strtoul(given, nullptr, 0));
  }
  std::printf("seed: QXPAF_TEST_SEED=%u\n", seed);
  return seed;
}

}  // namespace test_support

#endif
