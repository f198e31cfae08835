#include "platform/audio/ClipDecoder.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

namespace platform {
namespace {

constexpr std::size_t kLongestClipFrames = std::size_t{60} * kSampleRate;

struct Deleter {
  void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
  void operator()(SwrContext* context) const { swr_free(&context); }
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
template <class Object>
using Owned = std::unique_ptr<Object, Deleter>;

std::string text(int error) {
  char buffer[AV_ERROR_MAX_STRING_SIZE] = {};
  av_strerror(error, buffer, sizeof buffer);
  return buffer;
}

/// One decoding, from the opened file to the samples.
class Decoding {
 public:
  bool open(const std::string& path, std::string& problem) {
    AVFormatContext* opened = nullptr;
    // The "file:" keeps a path from being taken for another protocol's.
    int error = avformat_open_input(&opened, ("file:" + path).c_str(), nullptr, nullptr);
    input_.reset(opened);
    if (error >= 0) error = avformat_find_stream_info(input_.get(), nullptr);
    const AVCodec* codec = nullptr;
    if (error >= 0) {
      error = stream_ = av_find_best_stream(input_.get(), AVMEDIA_TYPE_AUDIO, -1, -1, &codec, 0);
    }
    if (error >= 0) error = openCodec(*codec);
    if (error >= 0) error = openResampler();
    if (error < 0) problem = text(error);
    return error >= 0;
  }

  void run(std::vector<float>& samples) {
    const Owned<AVPacket> packet(av_packet_alloc());
    while (samples.size() < kLongestClipFrames * kChannels &&
           av_read_frame(input_.get(), packet.get()) >= 0) {
      if (packet->stream_index == stream_) {
        avcodec_send_packet(codec_.get(), packet.get());
        receive(samples);
      }
      av_packet_unref(packet.get());
    }
    avcodec_send_packet(codec_.get(), nullptr);
    receive(samples);
    convert(nullptr, samples);
    if (samples.size() > kLongestClipFrames * kChannels) {
      samples.resize(kLongestClipFrames * kChannels);
    }
  }

 private:
  int openCodec(const AVCodec& codec) {
    codec_.reset(avcodec_alloc_context3(&codec));
    const int error =
        avcodec_parameters_to_context(codec_.get(), input_->streams[stream_]->codecpar);
    return error < 0 ? error : avcodec_open2(codec_.get(), &codec, nullptr);
  }

  int openResampler() {
    AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO;
    SwrContext* made = nullptr;
    const int error =
        swr_alloc_set_opts2(&made, &stereo, AV_SAMPLE_FMT_FLT, kSampleRate, &codec_->ch_layout,
                            codec_->sample_fmt, codec_->sample_rate, 0, nullptr);
    resampler_.reset(made);
    return error < 0 ? error : swr_init(made);
  }

  void receive(std::vector<float>& samples) {
    while (avcodec_receive_frame(codec_.get(), frame_.get()) >= 0) convert(frame_.get(), samples);
  }

  /// Appends the frame, or without one what the resampler still holds.
  void convert(const AVFrame* frame, std::vector<float>& samples) {
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

  Owned<AVFormatContext> input_;
  Owned<AVCodecContext> codec_;
  Owned<SwrContext> resampler_;
  Owned<AVFrame> frame_{av_frame_alloc()};
  int stream_ = -1;
};

}  // namespace

std::shared_ptr<const DecodedClip> decodeClip(const std::string& path, std::string& problem) {
  static const bool quiet = [] {
    av_log_set_level(AV_LOG_QUIET);
    return true;
  }();
  static_cast<void>(quiet);
  Decoding decoding;
  if (!decoding.open(path, problem)) return nullptr;
  auto clip = std::make_shared<DecodedClip>();
  decoding.run(clip->samples);
  if (clip->samples.empty()) {
    problem = "it holds no sound";
    return nullptr;
  }
  return clip;
}

}  // namespace platform
