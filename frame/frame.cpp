// The shared library is made of the rooms' objects; a library needs one source of its own.
