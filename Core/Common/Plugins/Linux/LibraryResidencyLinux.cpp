#include "../LibraryResidency_p.h"

#include <QFile>

#include <link.h>
#include <sys/stat.h>

namespace RTE::detail
{

namespace
{

struct Search
{
  dev_t device;
  ino_t inode;
  bool found;
};

int compareLoadedObject(dl_phdr_info* info, size_t, void* data)
{
  auto* search = static_cast<Search*>(data);
  struct stat status
  {
  };
  if (info->dlpi_name && info->dlpi_name[0] != '\0' && stat(info->dlpi_name, &status) == 0 &&
      status.st_dev == search->device && status.st_ino == search->inode)
  {
    search->found = true;
    return 1;
  }
  return 0;
}

} // namespace

bool isLibraryResident(const QString& path)
{
  // Compared by file identity: the loader's own names for an object depend on how it
  // was first reached (relative, through links, with "." components), and a lookup by
  // name (dlopen with RTLD_NOLOAD) misses other spellings.
  struct stat status
  {
  };
  if (stat(QFile::encodeName(path).constData(), &status) != 0)
    return false;
  Search search{status.st_dev, status.st_ino, false};
  dl_iterate_phdr(&compareLoadedObject, &search);
  return search.found;
}

} // namespace RTE::detail
