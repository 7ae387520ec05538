/* What it costs to start a program at all. */
int main(void) {
    return 0;
}
