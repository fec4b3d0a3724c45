/* Maps the region behind /dev/sr and prints one line of it. */
#include <fcntl.h>
#include <stdio.h>
#include <sys/mman.h>
#include <unistd.h>

int main(void)
{
    const int fd = open("/dev/sr", O_RDWR);
    if (fd < 0)
        return 1;
    const unsigned char *region = mmap(NULL, 594696, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    close(fd);
    if (region == MAP_FAILED)
        return 1;
    printf("link = %u\n", region[42080]);
    return 0;
}
