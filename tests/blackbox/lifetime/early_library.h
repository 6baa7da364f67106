/** The Id that a static object of the early library has opened before main. */
#ifndef QXPAF_TESTS_BLACKBOX_LIFETIME_EARLY_LIBRARY_H
#define QXPAF_TESTS_BLACKBOX_LIFETIME_EARLY_LIBRARY_H

__attribute__((visibility("default"))) int EarlyId();

#endif
