// Carries the precompiled header that all test programs share; it is never run.
int main()
{
    return 0;
}
