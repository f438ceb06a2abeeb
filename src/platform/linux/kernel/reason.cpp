// Reason: one row an error number.
#include "platform/linux/kernel/reason.h"

#include <cerrno>
#include <cstring>
#include <string_view>

namespace tellaxis::platform {

namespace {

struct Reason {
  int error;
  std::string_view text;
};

constexpr Reason reasons[] = {
    {ENOENT, "non esiste"},
    {EACCES, "accesso negato"},
    {EPERM, "operazione non permessa"},
    {EEXIST, "esiste gi\xE0"},
    {EISDIR, "\xE8 una cartella"},
    {ENOTDIR, "una parte del percorso non \xE8 una cartella"},
    {EINVAL, "non \xE8 un nome o un file adatto"},
    {EBUSY, "un altro programma lo sta usando"},
    {ENOTTY, "non \xE8 una linea seriale"},
    {ENODEV, "la periferica non c'\xE8"},
    {ETXTBSY, "un altro programma lo tiene aperto in scrittura"},
    {ECANCELED, "non \xE8 stato letto, e perci\xF2 resta"},
    {EINPROGRESS, "chi lo scrive potrebbe non aver finito"},
    {EAGAIN, "chi lo riceve non \xE8 pronto"},
    {ENXIO, "nessuno lo riceve"},
    {EPIPE, "chi lo riceveva l'ha chiuso"},
    {EFBIG, "il file \xE8 troppo grande"},
    {ENOSPC, "il disco \xE8 pieno"},
    {EDQUOT, "lo spazio assegnato \xE8 esaurito"},
    {EROFS, "il disco \xE8 in sola lettura"},
    {EIO, "errore di lettura o scrittura"},
    {ENAMETOOLONG, "il nome \xE8 troppo lungo"},
    {ELOOP, "\xE8 un collegamento, o ne attraversa troppi"},
    {EMFILE, "troppi file aperti"},
    {ENFILE, "troppi file aperti nel sistema"},
    {ENOMEM, "memoria esaurita"},
    {ENOEXEC, "non \xE8 un programma"},
    {ECONNREFUSED, "rifiuta il collegamento"},
    {ECONNRESET, "ha interrotto il collegamento"},
    {EHOSTUNREACH, "non si raggiunge"},
    {ENETUNREACH, "la rete non si raggiunge"},
    {ETIMEDOUT, "non risponde"},
    {EXDEV, "si trova su un altro disco"},
};

}  // namespace

std::string reasonOf(int error) {
  for (const Reason& reason : reasons)
    if (reason.error == error) return std::string(reason.text);
  const char* description = ::strerrordesc_np(error);
  return description != nullptr ? description : "errore " + std::to_string(error);
}

}  // namespace tellaxis::platform
