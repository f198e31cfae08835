// Measures and prints figures. Header only, shared by the benchmarks.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <string>
#include <vector>

namespace benchmarks {

using Clock = std::chrono::steady_clock;

/// Seconds on a monotonic clock.
inline double seconds() {
  return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}

/// Prevents the compiler from removing a result.
template <class T>
inline void keep(const T& value) {
  asm volatile("" : : "g"(&value) : "memory");
}

inline std::string currentTitle;

/// Prints a line above the figures that follow.
inline void title(const char* text) {
  currentTitle = text;
  std::puts(text);
}

/// A set of measurements in one unit.
class Figures {
 public:
  void add(double value) { values_.push_back(value); }
  std::size_t count() const { return values_.size(); }
  double median() const { return quantile(0.5); }
  /// The value below which this share (0 to 1) of the measurements lies; 0 when there are none.
  double quantile(double share) const {
    if (values_.empty()) return 0;
    std::vector<double> sorted = values_;
    const auto place = static_cast<std::size_t>(share * static_cast<double>(sorted.size() - 1));
    std::nth_element(sorted.begin(), sorted.begin() + static_cast<std::ptrdiff_t>(place),
                     sorted.end());
    return sorted[place];
  }
  /// The same measurements in another unit.
  Figures scaled(double factor) const {
    Figures result;
    for (const double value : values_) result.add(value * factor);
    return result;
  }
  /// Prints one line: name, median, 10th and 95th percentile, count. With BENCHMARK_FIGURES in the
  /// environment all measurements are added to that file, one JSON object a line.
  void print(const char* what, const char* unit) const {
    std::printf("%-44s %10.3f %-6s (p10 %.3f, p95 %.3f, n=%zu)\n", what, median(), unit,
                quantile(0.1), quantile(0.95), count());
    if (const char* const file = std::getenv("BENCHMARK_FIGURES")) write(file, what, unit);
  }

 private:
  void write(const char* file, const char* what, const char* unit) const {
    std::ofstream out(file, std::ios::app);
    out << "{\"title\": " << std::quoted(currentTitle) << ", \"what\": " << std::quoted(what)
        << ", \"unit\": " << std::quoted(unit) << ", \"values\": [";
    for (std::size_t place = 0; place < count(); ++place) {
      out << (place > 0 ? ", " : "") << values_[place];
    }
    out << "]}\n";
  }

  std::vector<double> values_;
};

/// Runs `work` `rounds` times after a tenth as many warm-up rounds; gives seconds per run.
template <class Work>
Figures measure(std::size_t rounds, Work work) {
  for (std::size_t round = 0; round < rounds / 10 + 1; ++round) work();
  Figures figures;
  for (std::size_t round = 0; round < rounds; ++round) {
    const double began = seconds();
    work();
    figures.add(seconds() - began);
  }
  return figures;
}

}  // namespace benchmarks
