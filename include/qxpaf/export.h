/* Marks a symbol as part of the exported interface. Everything else in the library is built hidden. */
#ifndef QXPAF_EXPORT_H
#define QXPAF_EXPORT_H

#define QXPAF_API __attribute__((visibility("default")))

#endif
