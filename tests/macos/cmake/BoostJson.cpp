// Boost.JSON as one file.
#include <boost/json/src.hpp>
