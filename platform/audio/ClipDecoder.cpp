#include "platform/audio/ClipDecoder.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <system_error>

#include "platform/audio/DecoderLibrary.h"

namespace valdren::platform {
namespace {

constexpr std::size_t kLongestClip = std::size_t{60} * kSampleRate * kChannels;
constexpr std::int64_t kLargestFile = 64 * 1024 * 1024;

/// The accepted kinds of files. A playlist, for example, would make the library open other files.
constexpr const char* kProtocols = "file";
constexpr const char* kForms = "mov,m4a,wav";
constexpr const char* kCodecs = "aac,alac,pcm_u8,pcm_s16le,pcm_s24le,pcm_f32le";

/// Outside of these bounds a few bytes could become seconds of sound.
constexpr int kLeastRate = 4000;
constexpr int kMostRate = 384000;
constexpr int kMostChannels = 8;

struct Deleter {
  void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
  void operator()(SwrContext* context) const { swr_free(&context); }
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
template <class Object>
using Owned = std::unique_ptr<Object, Deleter>;

Error clipError(std::string message) {
  return {kClipErrorDomain, 0, std::move(message)};
}

Error decoderError(int error) {
  char buffer[AV_ERROR_MAX_STRING_SIZE] = {};
  av_strerror(error, buffer, sizeof buffer);
  return clipError(buffer);
}

/// Decodes one file, from opening it to the samples.
class Decoding {
 public:
  /// 0, or the library's error.
  int open(const std::string& path) {
    AVDictionary* options = nullptr;
    av_dict_set(&options, "protocol_whitelist", kProtocols, 0);
    av_dict_set(&options, "format_whitelist", kForms, 0);
    av_dict_set(&options, "codec_whitelist", kCodecs, 0);
    AVFormatContext* opened = nullptr;
    // The prefix keeps the library from reading another protocol from the path.
    int error = avformat_open_input(&opened, ("file:" + path).c_str(), nullptr, &options);
    av_dict_free(&options);
    input_.reset(opened);
    if (error >= 0) error = avformat_find_stream_info(input_.get(), nullptr);
    if (error < 0) return error;
    const AVCodec* codec = nullptr;
    stream_ = av_find_best_stream(input_.get(), AVMEDIA_TYPE_AUDIO, -1, -1, &codec, 0);
    if (stream_ < 0) return stream_;
    codec_.reset(avcodec_alloc_context3(codec));
    error = avcodec_parameters_to_context(codec_.get(), input_->streams[stream_]->codecpar);
    // With the packets' time base the decoder drops the samples before the clip's start.
    codec_->pkt_timebase = input_->streams[stream_]->time_base;
    return error < 0 ? error : avcodec_open2(codec_.get(), codec, nullptr);
  }

  /// Appends the samples that can be decoded, up to the longest clip.
  void run(std::vector<float>& samples) {
    const Owned<AVPacket> packet(av_packet_alloc());
    while (samples.size() < kLongestClip && av_read_frame(input_.get(), packet.get()) >= 0) {
      if (packet->stream_index == stream_) {
        avcodec_send_packet(codec_.get(), packet.get());
        receive(samples);
      }
      av_packet_unref(packet.get());
    }
    avcodec_send_packet(codec_.get(), nullptr);
    receive(samples);
    convert(nullptr, samples);
    samples.resize(std::min(samples.size(), kLongestClip));
  }

 private:
  void receive(std::vector<float>& samples) {
    while (samples.size() < kLongestClip &&
           avcodec_receive_frame(codec_.get(), frame_.get()) >= 0) {
      if (prepareFor(*frame_, samples)) convert(frame_.get(), samples);
    }
  }

  /// Sets the resampler up for the frame's format, which may change between frames.
  bool prepareFor(const AVFrame& frame, std::vector<float>& samples) {
    const Form form{frame.format, frame.sample_rate, frame.ch_layout.nb_channels};
    if (resampler_ && form == form_) return true;
    convert(nullptr, samples);
    resampler_.reset();
    if (form.rate < kLeastRate || form.rate > kMostRate || form.channels < 1 ||
        form.channels > kMostChannels) {
      return false;
    }
    const AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO;
    SwrContext* made = nullptr;
    const int error =
        swr_alloc_set_opts2(&made, const_cast<AVChannelLayout*>(&stereo), AV_SAMPLE_FMT_FLT,
                            kSampleRate, const_cast<AVChannelLayout*>(&frame.ch_layout),
                            AVSampleFormat(form.format), form.rate, 0, nullptr);
    resampler_.reset(made);
    if (error < 0 || swr_init(made) < 0) resampler_.reset();
    form_ = form;
    return resampler_ != nullptr;
  }

  /// Appends the frame; without one, the rest that the resampler holds.
  void convert(const AVFrame* frame, std::vector<float>& samples) {
    if (!resampler_) return;
    const int incoming = frame ? frame->nb_samples : 0;
    const int room = swr_get_out_samples(resampler_.get(), incoming);
    if (room <= 0) return;
    const std::size_t before = samples.size();
    samples.resize(before + static_cast<std::size_t>(room) * kChannels);
    auto* target = reinterpret_cast<std::uint8_t*>(samples.data() + before);
    const int written = swr_convert(
        resampler_.get(), &target, room,
        frame ? const_cast<const std::uint8_t**>(frame->extended_data) : nullptr, incoming);
    samples.resize(before + (written > 0 ? static_cast<std::size_t>(written) * kChannels : 0));
  }

  struct Form {
    int format = -1;
    int rate = 0;
    int channels = 0;
    bool operator==(const Form&) const = default;
  };

  Owned<AVFormatContext> input_;
  Owned<AVCodecContext> codec_;
  Owned<SwrContext> resampler_;
  Form form_;  // the resampler's input
  Owned<AVFrame> frame_{av_frame_alloc()};
  int stream_ = -1;
};

Result<> loadDecoder() {
  for (Library* each : {&decoderLibrary, &resamplerLibrary}) {
    if (Result<> loaded = each->load(); !loaded) return loaded;
  }
  av_log_set_level(AV_LOG_QUIET);
  return {};
}

/// Whether the file may be read.
Result<> check(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return clipError(std::generic_category().message(errno));
  if (!S_ISREG(status.st_mode)) return clipError("it is not a regular file");
  if (status.st_size > kLargestFile) return clipError("it is larger than 64 MiB");
  return {};
}

}  // namespace

Result<std::shared_ptr<const DecodedClip>> decodeClip(const std::string& path) {
  if (const Result<> loaded = loadDecoder(); !loaded) return clipError(loaded.error().message);
  if (const Result<> checked = check(path); !checked) return checked.error();
  Decoding decoding;
  if (const int error = decoding.open(path); error < 0) return decoderError(error);
  auto clip = std::make_shared<DecodedClip>();
  decoding.run(clip->samples);
  if (clip->samples.empty()) return clipError("it holds no sound");
  for (float& sample : clip->samples) {
    sample = std::isfinite(sample) ? std::clamp(sample, -1.0F, 1.0F) : 0.0F;
  }
  return std::shared_ptr<const DecodedClip>(std::move(clip));
}

}  // namespace valdren::platform
