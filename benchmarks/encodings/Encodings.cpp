// The speed of base64 and related encodings on 1 MB, compared with GLib and the system's commands.
#include <glib.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "ads/support/VAD_VTMStringEncoding.h"
#include "benchmarks/Figures.h"

namespace {

using benchmarks::Figures;
using benchmarks::keep;
using benchmarks::measure;
using valdren::VAD_VTMStringEncoding;

constexpr std::size_t kBytes = 1'000'000;
constexpr std::size_t kRounds = 300;

std::string randomBytes() {
  std::mt19937 random(1);
  std::string data(kBytes, '\0');
  for (char& byte : data) byte = static_cast<char>(random());
  return data;
}

/// Prints megabytes of plain data per second.
void print(const char* what, const Figures& seconds) {
  std::printf("%-44s %10.0f MB/s   (%.3f ms, p95 %.3f ms, n=%zu)\n", what,
              kBytes / 1e6 / seconds.median(), seconds.median() * 1e3, seconds.quantile(0.95) * 1e3,
              seconds.count());
}

void measureOurs(const char* name, const VAD_VTMStringEncoding& encoding, const std::string& data) {
  const std::string text = encoding.encode(data);
  print((std::string(name) + " encode").c_str(),
        measure(kRounds, [&] { keep(encoding.encode(data)); }));
  print((std::string(name) + " decode").c_str(),
        measure(kRounds, [&] { keep(encoding.decode(text)); }));
}

void measureGLib(const std::string& data) {
  gchar* const text = g_base64_encode(reinterpret_cast<const guchar*>(data.data()), data.size());
  print("GLib base64 encode", measure(kRounds, [&] {
          gchar* const encoded =
              g_base64_encode(reinterpret_cast<const guchar*>(data.data()), data.size());
          keep(encoded);
          g_free(encoded);
        }));
  print("GLib base64 decode", measure(kRounds, [&] {
          gsize length = 0;
          guchar* const decoded = g_base64_decode(text, &length);
          keep(decoded);
          g_free(decoded);
        }));
  g_free(text);
}

void measureCommand(const std::string& data) {
  const auto folder = std::filesystem::temp_directory_path() / "benchmark-encodings";
  std::filesystem::create_directories(folder);
  const std::string plain = folder / "plain";
  const std::string encoded = folder / "encoded";
  std::ofstream(plain, std::ios::binary) << data;
  const auto run = [](const std::string& command) { keep(std::system(command.c_str())); };
  run("base64 -w0 <'" + plain + "' >'" + encoded + "'");
  print("command base64 encode (with its start)",
        measure(20, [&] { run("exec base64 -w0 <'" + plain + "' >/dev/null"); }));
  print("command base64 decode (with its start)",
        measure(20, [&] { run("exec base64 -d <'" + encoded + "' >/dev/null"); }));
  print("(starting a command that does nothing)", measure(20, [&] { run("exec true"); }));
  std::filesystem::remove_all(folder);
}

}  // namespace

int main() {
  const std::string data = randomBytes();
  measureOurs("base64", *VAD_VTMStringEncoding::rfc4648Base64StringEncoding(), data);
  measureGLib(data);
  measureCommand(data);
  measureOurs("web-safe base64", *VAD_VTMStringEncoding::rfc4648Base64WebsafeStringEncoding(),
              data);
  measureOurs("base32", *VAD_VTMStringEncoding::rfc4648Base32StringEncoding(), data);
  measureOurs("hexadecimal", *VAD_VTMStringEncoding::hexStringEncoding(), data);
  return 0;
}
