#include <iostream>
#include <string>
#include <vector>

#include "cli.h"
#include "fit_statements.h"
#include "import_statement.h"
#ifdef VOLTRIX_HAVE_RENDER
#include "plot_statement.h"
#endif

int main(int argc, char** argv) {
  voltrix::Cli cli(std::cout, std::cerr);
  voltrix::RegisterFitStatements(cli);
  voltrix::RegisterImportStatement(cli);
#ifdef VOLTRIX_HAVE_RENDER
  voltrix::RegisterPlotStatement(cli);
#endif
  return cli.main(std::vector<std::string>(argv + 1, argv + argc));
}
