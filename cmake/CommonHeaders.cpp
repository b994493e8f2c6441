// Says nothing: it gives the headers that are compiled once for many files a target to be compiled in.
