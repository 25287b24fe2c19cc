// Shows what a query becomes, through an installed host and the contract's headers.
#include <yfw/version.h>

#include <ocifip/host.h>
#include <iostream>

int main(int, char** arguments) {
  ocifip::HostOptions options;
  options.plugin = PLUGIN;
  options.models = MODELS;
  ocifip::Host host(options);
  ocifip::QueryRequest request;
  request.paths.push_back(arguments[1]);
  std::cout << host.query(request, ocifip::Format::kJson).text;
  return YFW_CONTRACT_VERSION_MAJOR == 0;
}
