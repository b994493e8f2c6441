// The least that a C++ program on standard input and output does: what `velmora` is measured against.
#include <iostream>
#include <string>

int main() {
  for (std::string line; std::getline(std::cin, line);) std::cout << line << std::endl;
}
