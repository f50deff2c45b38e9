#include <iostream>
#include <string>
#include <vector>

#include "cli.h"

int main(int argc, char** argv) {
  voltrix::Cli cli(std::cout, std::cerr);
  return cli.main(std::vector<std::string>(argv + 1, argv + argc));
}
