// The decoder's functions. The decoder and what it needs are over a hundred libraries, so they are
// loaded with the first clip. Within this namespace its functions are called by their own names;
// one that is missing in this list is an undefined symbol when the program is linked.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

#include "platform/base/Library.h"

namespace valdren::platform {

/// Brings those below it along.
inline Library decoderLibrary{AVFORMAT_FILE};
inline Library resamplerLibrary{SWRESAMPLE_FILE};

VALDREN_ON_DEMAND(decoderLibrary, av_dict_free);
VALDREN_ON_DEMAND(decoderLibrary, av_dict_set);
VALDREN_ON_DEMAND(decoderLibrary, av_find_best_stream);
VALDREN_ON_DEMAND(decoderLibrary, av_frame_alloc);
VALDREN_ON_DEMAND(decoderLibrary, av_frame_free);
VALDREN_ON_DEMAND(decoderLibrary, av_log_set_level);
VALDREN_ON_DEMAND(decoderLibrary, av_packet_alloc);
VALDREN_ON_DEMAND(decoderLibrary, av_packet_free);
VALDREN_ON_DEMAND(decoderLibrary, av_packet_unref);
VALDREN_ON_DEMAND(decoderLibrary, av_read_frame);
VALDREN_ON_DEMAND(decoderLibrary, av_strerror);
VALDREN_ON_DEMAND(decoderLibrary, avcodec_alloc_context3);
VALDREN_ON_DEMAND(decoderLibrary, avcodec_free_context);
VALDREN_ON_DEMAND(decoderLibrary, avcodec_open2);
VALDREN_ON_DEMAND(decoderLibrary, avcodec_parameters_to_context);
VALDREN_ON_DEMAND(decoderLibrary, avcodec_receive_frame);
VALDREN_ON_DEMAND(decoderLibrary, avcodec_send_packet);
VALDREN_ON_DEMAND(decoderLibrary, avformat_close_input);
VALDREN_ON_DEMAND(decoderLibrary, avformat_find_stream_info);
VALDREN_ON_DEMAND(decoderLibrary, avformat_open_input);
VALDREN_ON_DEMAND(resamplerLibrary, swr_alloc_set_opts2);
VALDREN_ON_DEMAND(resamplerLibrary, swr_convert);
VALDREN_ON_DEMAND(resamplerLibrary, swr_free);
VALDREN_ON_DEMAND(resamplerLibrary, swr_get_out_samples);
VALDREN_ON_DEMAND(resamplerLibrary, swr_init);

}  // namespace valdren::platform
