// What clients of the agent send: an input is the bytes of a session, behind a hello with the
// framing that the first byte chooses.
#include "core.h"
#include "framing.h"
#include "target.h"

namespace {

using namespace ocifip;
using namespace ocifip::agent;

// Takes what is for a client, and looks at whether it is XML.
class Reader : public Peer {
 public:
  void use(Framing framing) override { framing_ = framing; }
  void send(std::string message) override { parse_xml(message); }
  std::size_t backlog() override { return 0; }
  void resume() override {}
  void end() override { has_ended = true; }
  void abort() override { has_ended = true; }

  [[nodiscard]] Framing framing() const { return framing_; }
  bool has_ended = false;

 private:
  Framing framing_ = Framing::kEndMark;
};

Host& host() {
  static Host the_host({OCIFIP_PLUGIN, OCIFIP_MODELS_DIR, OCIFIP_FUZZ_DEVICE});
  return the_host;
}

void receive(Core& core, std::string message) {
  const Work work = core.received(1, std::move(message));
  while (work() != Step::kDone) {
  }
}

void run(const std::string& bytes, bool has_chunks) {
  static const Configuration start = host().running();
  host().commit(start, false);
  Core core(host(), false, [](const std::string&) {});
  Reader peer;
  core.open(1, {"fuzzer"}, peer);
  receive(core,
          std::string("<hello xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"><capabilities>"
                      "<capability>urn:ietf:params:netconf:base:1.") +
              (has_chunks ? "1" : "0") + "</capability></capabilities></hello>");
  FrameReader reader(std::size_t{1} << 16);
  reader.use(peer.framing());
  reader.add(bytes);
  while (auto message = reader.next()) {
    receive(core, std::move(*message));
    if (peer.has_ended) break;
  }
  core.close(1, "");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = ocifip::fuzz::text_of(data, size);
  if (input.empty()) return 0;
  try {
    run(input.substr(1), input.front() == '#');
  } catch (const ocifip::agent::FramingError&) {
    // It ends the session, and nothing else.
  }
  return 0;
}
