"""Writes zip files whose bytes depend on their contents and one time only."""
import time
import zipfile


def write_zip(archive, folder, top, epoch):
    """All files below `folder`, as files below the folder `top` of the archive."""
    stamp = max(time.gmtime(epoch)[:6], (1980, 1, 1, 0, 0, 0))
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as out:
        for path in sorted(folder.rglob("*"), key=lambda path: path.relative_to(folder).as_posix()):
            if path.is_file():
                entry = zipfile.ZipInfo(f"{top}/{path.relative_to(folder).as_posix()}", stamp)
                entry.compress_type = zipfile.ZIP_DEFLATED
                entry.create_system = 3
                entry.external_attr = 0o100644 << 16
                out.writestr(entry, path.read_bytes())
