"""Whether the meshes that a program has written are good."""
import pathlib
import subprocess


def problem_of_meshes(kel, folder):
    """What `kel check` says of the case files in a folder if it does not find all of them good; else None."""
    for file in sorted(pathlib.Path(folder).glob("*.case.kel")):
        check = subprocess.run([kel, "check", file], capture_output=True, text=True, check=False)
        if check.returncode != 0:
            return f"kel check {file.name} ended with {check.returncode}:\n{check.stdout}{check.stderr}"
    return None
