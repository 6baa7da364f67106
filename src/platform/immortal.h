/** Process-wide state that outlives every caller. */
#ifndef QXPAF_SRC_PLATFORM_IMMORTAL_H
#define QXPAF_SRC_PLATFORM_IMMORTAL_H

#include <new>

namespace qxpaf {

/**
 * The one object of type T, constructed on first use and never destroyed: static constructors and destructors of other
 * libraries and threads that outlive main may call in before this library's own have run, or after. Memory that T owns
 * is given back by the library's shut-down, which empties T.
 */
template <class T>
T& Immortal()
{
  alignas(T) static unsigned char storage[sizeof(T)];
  static T* const object = new (storage) T;
  return *object;
}

/** Empties a container and frees its memory, which clear() and assigning {} would keep. */
template <class Container>
void GiveBack(Container& container)
{
  Container().swap(container);
}

}  // namespace qxpaf

#endif
