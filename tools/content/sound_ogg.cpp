// Ogg Vorbis files. An Ogg page has a head of 27 bytes and a table of its segments' lengths; the first packet of a
// Vorbis stream is 30 bytes long and fills the first page.
#include "sound_ogg.h"

#include "output.h"

#include <vorbis/vorbisenc.h>

#include <algorithm>
#include <cstdio>

constexpr int SerialNumber = 1;  // any will do in a file of one stream; the same one makes the same bytes
constexpr size_t BlockLength = 1024;
constexpr size_t FirstPacket = 28;  // behind the page's head and a table of one length

namespace {

struct Encoder {
  vorbis_info info;
  vorbis_comment comment;
  vorbis_dsp_state dsp;
  vorbis_block block;
  ogg_stream_state stream;
  std::string bytes;
};

}  // namespace

static void TakePage(Encoder *e, const ogg_page &page) {
  e->bytes.append(reinterpret_cast<const char *>(page.header), static_cast<size_t>(page.header_len));
  e->bytes.append(reinterpret_cast<const char *>(page.body), static_cast<size_t>(page.body_len));
}

static void WriteHeaders(Encoder *e) {
  ogg_packet head, comments, codebooks;
  vorbis_analysis_headerout(&e->dsp, &e->comment, &head, &comments, &codebooks);
  for (ogg_packet *packet : {&head, &comments, &codebooks}) ogg_stream_packetin(&e->stream, packet);
  ogg_page page;
  while (ogg_stream_flush(&e->stream, &page) != 0) TakePage(e, page);
}

// Takes every packet out that the encoder has finished.
static void Drain(Encoder *e) {
  ogg_packet packet;
  ogg_page page;
  while (vorbis_analysis_blockout(&e->dsp, &e->block) == 1) {
    vorbis_analysis(&e->block, nullptr);
    vorbis_bitrate_addblock(&e->block);
    while (vorbis_bitrate_flushpacket(&e->dsp, &packet) != 0) {
      ogg_stream_packetin(&e->stream, &packet);
      while (ogg_stream_pageout(&e->stream, &page) != 0) TakePage(e, page);
    }
  }
}

static void Encode(Encoder *e, const std::vector<const Samples *> &channels) {
  const size_t count = channels[0]->size();
  for (size_t at = 0; at < count; at += BlockLength) {
    const size_t length = std::min(BlockLength, count - at);
    float **rows = vorbis_analysis_buffer(&e->dsp, BlockLength);
    for (size_t c = 0; c < channels.size(); c++) std::copy_n(channels[c]->data() + at, length, rows[c]);
    vorbis_analysis_wrote(&e->dsp, static_cast<int>(length));
    Drain(e);
  }
  vorbis_analysis_wrote(&e->dsp, 0);
  Drain(e);
  ogg_page page;
  while (ogg_stream_flush(&e->stream, &page) != 0) TakePage(e, page);
}

bool WriteOgg(const std::string &path, const std::vector<const Samples *> &channels, float quality, const char *title) {
  Encoder e{};
  vorbis_info_init(&e.info);
  if (vorbis_encode_init_vbr(&e.info, static_cast<long>(channels.size()), SampleRate, quality) != 0) {
    std::fprintf(stderr, "%s: can't be encoded\n", path.c_str());
    vorbis_info_clear(&e.info);
    return false;
  }
  vorbis_comment_init(&e.comment);
  vorbis_comment_add_tag(&e.comment, "TITLE", title);
  vorbis_analysis_init(&e.dsp, &e.info);
  vorbis_block_init(&e.dsp, &e.block);
  ogg_stream_init(&e.stream, SerialNumber);
  WriteHeaders(&e);
  Encode(&e, channels);
  ogg_stream_clear(&e.stream);
  vorbis_block_clear(&e.block);
  vorbis_dsp_clear(&e.dsp);
  vorbis_comment_clear(&e.comment);
  vorbis_info_clear(&e.info);
  return WriteIfChanged(path, e.bytes);
}

bool ReadOggHead(const std::string &path, OggHead *head) {
  std::string bytes;
  if (!ReadWhole(path, &bytes) || bytes.size() < FirstPacket + 30) return false;
  if (bytes.compare(0, 4, "OggS") != 0 || bytes.compare(FirstPacket, 7, "\1vorbis") != 0) return false;
  const auto byte = [&](size_t at) { return static_cast<int>(static_cast<unsigned char>(bytes[FirstPacket + at])); };
  head->channels = byte(11);
  head->rate = byte(12) | byte(13) << 8 | byte(14) << 16 | (byte(15) & 127) << 24;
  return head->channels > 0;
}
