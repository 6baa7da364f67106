// Only here so that the headers shared by all tests are compiled once.
