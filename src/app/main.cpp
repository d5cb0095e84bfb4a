#include "app/zu_main.h"

int main(int argc, char **argv)
{
    return zu_main(argc, argv);
}
