#ifndef QXPAF_TESTS_SUPPORT_RANDOM_SEED_H
#define QXPAF_TESTS_SUPPORT_RANDOM_SEED_H

#include <cstdio>
#include <cstdlib>
#include <random>

namespace test_support {

/** The seed of a test with random input: QXPAF_TEST_SEED where it is set, otherwise a new one. It is printed. */
inline unsigned int RandomSeed()
{
  const char* given = std::getenv("QXPAF_TEST_SEED");
  const unsigned int seed =
      given != nullptr ? static_cast<unsigned int>(std::strtoul(given, nullptr, 0)) : std::random_device()();
  std::printf("seed: QXPAF_TEST_SEED=%u\n", seed);
  return seed;
}

}  // namespace test_support

#endif
