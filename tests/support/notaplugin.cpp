// A shared library that is no pendant plug-in: it exports neither the plug-in interface nor a
// registration, and shares no code with the host, so loading it duplicates nothing.
extern "C" int kel_not_a_plugin()
{
    return 42;
}
