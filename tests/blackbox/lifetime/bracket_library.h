/** What a program that is linked to the bracket library defines. */
#ifndef QXPAF_TESTS_BLACKBOX_LIFETIME_BRACKET_LIBRARY_H
#define QXPAF_TESTS_BLACKBOX_LIFETIME_BRACKET_LIBRARY_H

/** Called before libqxpaf.so has started. No static object of the program is there yet. */
__attribute__((visibility("default"))) void BeforeStartUp();

/** Called after libqxpaf.so has shut down. No static object of the program is there any more. */
__attribute__((visibility("default"))) void AfterShutDown();

#endif
