// Where the person is, as the publisher tells it, and how a request carries it.
#pragma once

#include <memory>
#include <optional>
#include <string>

namespace valdren {

/// Coordinates, or a description in free text.
class VADLocation {
 public:
  /// Degrees and metres; null unless latitude and longitude are in range and both differ from 0.
  static std::shared_ptr<VADLocation> initWithLatitude(float latitude, float longitude,
                                                       float accuracy);
  /// Null for an empty text.
  static std::shared_ptr<VADLocation> initWithDescription(const std::string& description);

  /// Whether it is given as coordinates.
  bool isPreciseLocation() const;
  float latitude() const { return latitude_; }
  float longitude() const { return longitude_; }
  float accuracy() const { return accuracy_; }
  /// The free text, or "LATITUDE,LONGITUDE".
  std::string description() const;

  /// When it was made, in seconds since 1970 UTC.
  double timestamp() const { return timestamp_; }
  void setTimestamp(double timestamp) { timestamp_ = timestamp; }

  /// The same place at any time.
  bool isEqual(const VADLocation& other) const;
  std::shared_ptr<VADLocation> copy() const;

  /// The request's text: coordinates encrypted, a description encoded; none when that fails.
  std::optional<std::string> oolongRepresentation() const;

 private:
  VADLocation();
  std::string describedRepresentation() const;
  std::optional<std::string> preciseRepresentation() const;

  float latitude_ = 0;
  float longitude_ = 0;
  float accuracy_ = 0;
  std::string description_;
  double timestamp_;
};

}  // namespace valdren
